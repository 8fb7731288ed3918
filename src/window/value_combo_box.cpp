#include "window/value_combo_box.h"

#include "window/accessible_combo_box.h"

#include <QAccessible>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

namespace kestrova {

ValueComboBox::ValueComboBox(QWidget* parent) : QComboBox(parent) { AccessibleComboBox::install(); }

void ValueComboBox::setDisplayedValue(const QString& value) {
  if (displayedValue_ == value) return;
  displayedValue_ = value;
  update();
  QAccessibleEvent changed(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&changed);
}

void ValueComboBox::initStyleOption(QStyleOptionComboBox* option) const {
  QComboBox::initStyleOption(option);
  option->currentText = displayedValue_;
}

void ValueComboBox::wheelEvent(QWheelEvent* event) {
  if (hasFocus())
    QComboBox::wheelEvent(event);
  else
    event->ignore();
}

}  // namespace kestrova
