#pragma once

#include "app/host.h"

class QWidget;

namespace kestrova {

/// The desktop's own folder chooser as a sheet on a window.
class WindowFolderPanel : public FolderPanel {
 public:
  /// The window must outlive the panel.
  explicit WindowFolderPanel(QWidget& window) : window_(window) {}

  void beginSheetModalForWindow(Completion completion) override;

 private:
  QWidget& window_;
};

}  // namespace kestrova
