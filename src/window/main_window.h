#pragma once

#include "app/main_interface.h"
#include "window/frame_refresh.h"

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
  /// What is absent of the host's panels and its `terminate` is the window's own.
  explicit MainWindow(Host host);
  ~MainWindow() override;

  MainInterface& controls() { return interface_; }

  /// Asks whether the program may end, and ends it then; returns whether it ends.
  bool terminate();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  Host completed(Host host);
  void layOut();
  void keepNumbersInPlace();
  void bindFolders();
  void bindOptions();
  void bindFound();
  void bindWritten();
  void bindRun();
  void bindMenus();
  void showSources();
  void showProgress();

  MainInterface interface_;
  std::unique_ptr<Ui::MainWindow> ui_;
  FrameRefresh refresh_;  // ends before what it refers to
  bool isAsking_ = false;
};

}  // namespace kestrova
