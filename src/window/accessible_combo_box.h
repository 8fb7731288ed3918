#pragma once

#include <QAccessibleWidget>

namespace kestrova {

class ValueComboBox;

/// What screen readers see of a ValueComboBox: the same as of any combo box, but with the displayed value.
class AccessibleComboBox : public QAccessibleWidget {
 public:
  explicit AccessibleComboBox(ValueComboBox& combo);

  /// Registers this interface for ValueComboBoxes. May be called again.
  static void install();

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QString text(QAccessible::Text kind) const override;
  QStringList actionNames() const override;
  void doAction(const QString& name) override;

 private:
  ValueComboBox& combo() const;
};

}  // namespace kestrova
