#pragma once

#include <QString>
#include <QStringList>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>

namespace kestrova {

/// The controls that the controller talks to: plain objects without a display. The window binds widgets to
/// them; the command line and the tests use them as they are.
///
/// A control is changed on the main thread only. The values that workers read (`indexOfSelectedItem`,
/// `state`) are atomic; everything else belongs to the main thread.
class Control {
 public:
  virtual ~Control() = default;
  Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled) { change(enabled_, enabled); }
  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden) { change(hidden_, hidden); }

  /// Called after every change; a widget that shows the control listens here.
  std::function<void()> didChange;

  /// From now on nothing changes the control.
  void freeze() { frozen_ = true; }

 protected:
  bool isFrozen() const { return frozen_; }
  template <typename Field, typename Value>
  void change(Field& field, const Value& value) {
    if (frozen_) return;
    field = value;
    if (didChange) didChange();
  }

 private:
  bool enabled_ = true;
  bool hidden_ = false;
  bool frozen_ = false;
};

class TextField : public Control {
 public:
  const QString& stringValue() const { return stringValue_; }
  void setStringValue(const QString& text) { change(stringValue_, text); }

 private:
  QString stringValue_;
};

class Button : public Control {
 public:
  const QString& title() const { return title_; }
  void setTitle(const QString& title) { change(title_, title); }

  /// Does what the user's click does, unless the button is disabled.
  void performClick() {
    if (isEnabled() && action) action();
  }
  std::function<void()> action;

 private:
  QString title_;
};

class CheckBox : public Control {
 public:
  static constexpr int off = 0;
  static constexpr int on = 1;
  static constexpr int mixed = -1;

  int state() const { return state_; }
  /// Any positive number is on, any negative one mixed.
  void setState(std::int64_t state) { change(state_, state > 0 ? on : state < 0 ? mixed : off); }

  /// The user's click: toggles, then acts.
  void performClick() {
    if (!isEnabled()) return;
    setState(state() == on ? off : on);
    if (action) action();
  }
  std::function<void()> action;

 private:
  std::atomic<int> state_ = off;
};

/// A list of texts of which one is selected. The displayed value is separate from the selection.
class ComboBox : public Control {
 public:
  static constexpr int noSelection = -1;

  const QStringList& items() const { return items_; }
  void setItems(const QStringList& items) { change(items_, items); }

  int indexOfSelectedItem() const { return index_; }
  /// Selects without changing what is displayed, and tells the delegate; an index outside the list deselects.
  void selectItemAtIndex(int index) {
    change(index_, index >= 0 && index < items_.size() ? index : noSelection);
    if (selectionDidChange) selectionDidChange();
  }
  /// The selected item's text; empty without a selection.
  QString objectValueOfSelectedItem() const { return items_.value(index_); }

  const QString& objectValue() const { return objectValue_; }
  void setObjectValue(const QString& value) { change(objectValue_, value); }

  /// The user's choice: displays the item and selects it.
  void chooseItem(int index) {
    if (!isEnabled()) return;
    setObjectValue(items_.value(index));
    selectItemAtIndex(index);
  }

  /// The delegate's notification.
  std::function<void()> selectionDidChange;

 private:
  QStringList items_;
  QString objectValue_;
  std::atomic<int> index_ = noSelection;
};

/// A group of radio buttons, one of which is selected.
class RadioMatrix : public Control {};

class ProgressIndicator : public Control {
 public:
  bool isIndeterminate() const { return indeterminate_; }
  void setIndeterminate(bool indeterminate) { change(indeterminate_, indeterminate); }
  bool isAnimating() const { return animating_; }
  void startAnimation() { change(animating_, true); }
  void stopAnimation() { change(animating_, false); }
  double maxValue() const { return maxValue_; }
  void setMaxValue(double value) { change(maxValue_, value); }
  double doubleValue() const { return doubleValue_; }
  void setDoubleValue(double value) { change(doubleValue_, value); }

 private:
  bool indeterminate_ = false;
  bool animating_ = false;
  double maxValue_ = 100;
  double doubleValue_ = 0;
};

class TableView : public Control {
 public:
  using RowIndexes = std::set<std::size_t>;

  const RowIndexes& selectedRowIndexes() const { return selectedRowIndexes_; }
  /// The user's selection; the widget that shows the rows already has it.
  void selectRowIndexes(const RowIndexes& rows) {
    if (!isFrozen()) selectedRowIndexes_ = rows;
  }
  /// The rows have changed: nothing is selected, and the widget that shows them asks the data source again.
  void reloadData() { change(selectedRowIndexes_, RowIndexes()); }

 private:
  RowIndexes selectedRowIndexes_;
};

/// The main window as the controller knows it; panels and alerts are attached to it.
class Window : public Control {};

/// A reference to a control that its owner may destroy. A control that is gone reads as absent (zero, empty),
/// and calls to it do nothing. It is as thread-safe as the control itself.
template <typename ControlType>
class Outlet {
 public:
  Outlet() = default;
  Outlet& operator=(const std::shared_ptr<ControlType>& control) {
    control_ = control;
    return *this;
  }

  bool isAbsent() const { return control_.expired(); }
  /// The control for the duration of one expression; a stand-in when it is gone.
  std::shared_ptr<ControlType> operator->() const {
    if (auto control = control_.lock()) return control;
    return standIn();
  }

 private:
  /// One for all outlets of its type; calls to it change nothing.
  static const std::shared_ptr<ControlType>& standIn() {
    static const auto control = [] {
      auto made = std::make_shared<ControlType>();
      if constexpr (std::is_same_v<ControlType, ComboBox>) {
        made->setItems({QString()});  // so that index 0, which an absent one reads as, can be selected
        made->selectItemAtIndex(0);
      }
      made->freeze();
      return made;
    }();
    return control;
  }

  std::weak_ptr<ControlType> control_;
};

}  // namespace kestrova
