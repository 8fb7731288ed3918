#pragma once

#include "app/controls.h"

#include <QBasicTimer>
#include <QObject>
#include <deque>
#include <functional>
#include <memory>

namespace kestrova {

/// Copies controls to the widgets that show them. A control may change a hundred thousand times a second: a
/// change only marks it, and the marked controls are copied once a frame. Nothing runs while nothing changes.
/// Main thread only. Serves as the context of all connections that use what it copies.
class FrameRefresh : public QObject {
 public:
  using Copy = std::function<void()>;

  ~FrameRefresh() override;

  /// Copies now, and after every change of the control.
  void bind(const std::shared_ptr<Control>& control, Copy copy);

  /// Called after each frame in which something was copied.
  std::function<void()> didRefresh;

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  struct Binding {
    std::shared_ptr<Control> control;
    Copy copy;
    bool changed = false;
  };

  void mark(Binding& binding);

  std::deque<Binding> bindings_;  // a deque, as controls refer to its elements
  QBasicTimer timer_;
};

}  // namespace kestrova
