#pragma once

#include <QComboBox>

namespace kestrova {

/// A combo box that shows a value of its own, which may differ from the selected item's text. Screen readers
/// are told the shown one, as its name; its label names it by relation.
class ValueComboBox : public QComboBox {
  Q_OBJECT

 public:
  explicit ValueComboBox(QWidget* parent = nullptr);

  const QString& displayedValue() const { return displayedValue_; }
  void setDisplayedValue(const QString& value);

 protected:
  void initStyleOption(QStyleOptionComboBox* option) const override;
  /// Only turns the choice when the user is at it, not when the pointer passes by.
  void wheelEvent(QWheelEvent* event) override;

 private:
  QString displayedValue_;
};

}  // namespace kestrova
