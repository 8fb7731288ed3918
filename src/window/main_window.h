#pragma once

#include "app/main_interface.h"
#include "model/tally.h"
#include "window/drop_highlight.h"
#include "window/frame_refresh.h"
#include "window/run_display.h"

#include <QMainWindow>
#include <memory>

namespace kestrova {

namespace Ui {
class MainWindow;
}

/// The window: owns the controls with their controller, and binds a widget to each, both ways. Main thread
/// only.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// Panels and a `terminate` that the host does not have are the window's own. Without a desktop nothing is
  /// shown outside the window.
  explicit MainWindow(Host host, std::shared_ptr<DesktopStatus> desktop = nullptr);
  ~MainWindow() override;

  MainInterface& controls() { return interface_; }

  /// Asks whether the program may end, and if so ends it; returns whether it does.
  bool terminate();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool event(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  Host completed(Host host);
  void useReadableColors();
  void layOut();
  void alignColumns();
  void keepNumbersInPlace();
  void bindFolders();
  void bindOptions();
  void bindFound();
  void bindWritten();
  void bindRun();
  void bindMenus();
  void showSources();
  bool isOverTarget(QPointF place) const;
  void start();
  FileResult<void> checkTarget() const;
  void openTarget();

  Tally tally_;  // workers of the interface's controller write to it
  std::shared_ptr<FileManager> files_;
  std::shared_ptr<Workspace> workspace_;
  std::shared_ptr<DesktopStatus> desktop_;
  MainInterface interface_;
  std::unique_ptr<Ui::MainWindow> ui_;
  DropHighlight dropHighlight_;
  std::unique_ptr<RunDisplay> display_;
  FrameRefresh refresh_;  // destroyed before what it refers to
  bool isAsking_ = false;
};

}  // namespace kestrova
