#pragma once

#include "app/host.h"

class QWidget;

namespace kestrova {

/// Alerts as message boxes with a warning sign, modal for the whole program.
class WindowAlertPanel : public AlertPanel {
 public:
  /// The window must outlive the panel.
  explicit WindowAlertPanel(QWidget& window) : window_(window) {}

  int runModal(const Alert& alert) override;

 private:
  QWidget& window_;
};

}  // namespace kestrova
