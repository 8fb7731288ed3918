#include "window/accessible_combo_box.h"

#include "window/value_combo_box.h"

#include <QAbstractItemView>

namespace kestrova {

namespace {

QAccessibleInterface* accessibleOf(const QString&, QObject* object) {
  auto* combo = qobject_cast<ValueComboBox*>(object);
  return combo ? new AccessibleComboBox(*combo) : nullptr;
}

}  // namespace

AccessibleComboBox::AccessibleComboBox(ValueComboBox& combo)
    : QAccessibleWidget(&combo, QAccessible::ComboBox) {}

void AccessibleComboBox::install() { QAccessible::installFactory(accessibleOf); }

ValueComboBox& AccessibleComboBox::combo() const { return *static_cast<ValueComboBox*>(widget()); }

int AccessibleComboBox::childCount() const { return 1; }

QAccessibleInterface* AccessibleComboBox::child(int index) const {
  return index == 0 ? QAccessible::queryAccessibleInterface(combo().view()) : nullptr;
}

int AccessibleComboBox::indexOfChild(const QAccessibleInterface* child) const {
  return child->object() == combo().view() ? 0 : -1;
}

QString AccessibleComboBox::text(QAccessible::Text kind) const {
  const bool isValue = kind == QAccessible::Name || kind == QAccessible::Value;
  return isValue ? combo().displayedValue() : QAccessibleWidget::text(kind);
}

QStringList AccessibleComboBox::actionNames() const {
  return {QAccessibleActionInterface::showMenuAction(), QAccessibleActionInterface::pressAction()};
}

void AccessibleComboBox::doAction(const QString& name) {
  if (!combo().isEnabled() || !actionNames().contains(name)) return;
  if (combo().view()->isVisible())
    combo().hidePopup();
  else
    combo().showPopup();
}

}  // namespace kestrova
