#include "window/value_combo_box.h"

#include <QStyleOptionComboBox>
#include <QWheelEvent>

namespace kestrova {

void ValueComboBox::setDisplayedValue(const QString& value) {
  displayedValue_ = value;
  update();
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
