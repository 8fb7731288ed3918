#pragma once

#include <QComboBox>

namespace kestrova {

/// A combo box whose displayed value may differ from the selected item's text. Screen readers get the
/// displayed value as its name; its label names it by relation.
class ValueComboBox : public QComboBox {
  Q_OBJECT

 public:
  explicit ValueComboBox(QWidget* parent = nullptr);

  const QString& displayedValue() const { return displayedValue_; }
  void setDisplayedValue(const QString& value);

 protected:
  void initStyleOption(QStyleOptionComboBox* option) const override;
  /// Only changes the selection when the box has the focus, not when the pointer is just above it.
  void wheelEvent(QWheelEvent* event) override;

 private:
  QString displayedValue_;
};

}  // namespace kestrova
