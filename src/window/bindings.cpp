#include "window/bindings.h"

#include "window/shown_text.h"
#include "window/value_combo_box.h"
#include "window/visible_text.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>
#include <limits>

namespace kestrova {

namespace {

void copyState(const Control& control, QWidget& widget) {
  widget.setEnabled(control.isEnabled());
  widget.setVisible(!control.isHidden());
}

// Those who hear a number must hear what it counts.
void nameAccessibly(QLabel& label, const QString& meaning) {
  if (meaning.isEmpty()) return;
  label.setAccessibleName(label.text().isEmpty() ? meaning : meaning + QStringLiteral(": ") + label.text());
}

Qt::CheckState checkState(int state) {
  return state == CheckBox::on ? Qt::Checked : state == CheckBox::off ? Qt::Unchecked : Qt::PartiallyChecked;
}

int wholeNumber(double value) {
  return static_cast<int>(std::clamp(value, 0.0, double{std::numeric_limits<int>::max()}));
}

void copyProgress(const ProgressIndicator& progress, QProgressBar& bar) {
  const int maximum = wholeNumber(progress.maxValue());
  if (progress.isIndeterminate() && progress.isAnimating()) {
    bar.setRange(0, 0);  // moves without saying how far
  } else if (progress.isIndeterminate() || maximum == 0) {
    bar.setRange(0, 1);
    bar.setValue(0);
  } else {
    bar.setRange(0, maximum);
    bar.setValue(std::min(wholeNumber(progress.doubleValue()), maximum));
  }
}

}  // namespace

void bindTextField(FrameRefresh& refresh, const std::shared_ptr<TextField>& field, QLabel& label,
                   Wording wording) {
  label.setTextFormat(Qt::PlainText);
  refresh.bind(field, [field, &label, wording, meaning = label.accessibleName()] {
    const QString& text = field->stringValue();
    label.setText(visibleText(wording ? wording(text) : text));
    nameAccessibly(label, meaning);
    copyState(*field, label);
  });
}

void bindButton(FrameRefresh& refresh, const std::shared_ptr<Button>& button, QAbstractButton& widget) {
  refresh.bind(button, [button, &widget] {
    const QString text = shownTitle(button->title());
    if (widget.text() != text) widget.setText(text);
    copyState(*button, widget);
  });
  QObject::connect(&widget, &QAbstractButton::clicked, &refresh, [button] { button->performClick(); });
}

// A screen reader toggles without a click, so only the difference between widget and control counts.
void bindCheckBox(FrameRefresh& refresh, const std::shared_ptr<CheckBox>& box, QCheckBox& widget) {
  refresh.bind(box, [box, &widget] {
    widget.setCheckState(checkState(box->state()));
    widget.setTristate(box->state() == CheckBox::mixed);
    copyState(*box, widget);
  });
  QObject::connect(&widget, &QCheckBox::stateChanged, &refresh, [box, &widget] {
    if (widget.checkState() != checkState(box->state())) box->performClick();
  });
}

void bindComboBox(FrameRefresh& refresh, const std::shared_ptr<ComboBox>& combo, ValueComboBox& widget) {
  widget.addItems(combo->items());
  refresh.bind(combo, [combo, &widget] {
    widget.setCurrentIndex(combo->indexOfSelectedItem());
    widget.setDisplayedValue(combo->objectValue());
    copyState(*combo, widget);
  });
  QObject::connect(&widget, &QComboBox::activated, &refresh,
                   [combo](int index) { combo->chooseItem(index); });
}

void bindProgressBar(FrameRefresh& refresh, const std::shared_ptr<ProgressIndicator>& progress,
                     QProgressBar& widget) {
  refresh.bind(progress, [progress, &widget] {
    copyProgress(*progress, widget);
    copyState(*progress, widget);
  });
}

}  // namespace kestrova
