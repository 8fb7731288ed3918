#pragma once

#include "app/main_interface.h"
#include "app/time_left.h"
#include "model/tally.h"
#include "platform/desktop_status.h"
#include "window/run_texts.h"

#include <QBasicTimer>
#include <QObject>
#include <memory>
#include <optional>

class QWidget;

namespace kestrova {

namespace Ui {
class MainWindow;
}

/// Shows how far the run is, in addition to the controls: in words below the bar, in the window's title and
/// in the task bar. At the end it shows what needs attention, here and, if the user is elsewhere, on the
/// desktop. Main thread only; everything it refers to must outlive it.
class RunDisplay : public QObject {
  Q_OBJECT

 public:
  /// What it reads, and where it shows it.
  struct Places {
    QWidget& window;
    Ui::MainWindow& ui;
    const MainInterface& interface;
    const Tally& tally;
    std::shared_ptr<DesktopStatus> desktop;  ///< may be absent
  };

  explicit RunDisplay(Places places);

  /// A run begins.
  void begin();
  /// None begins, as nothing can be written to the target: for this reason, in the system's words.
  void refuse(const QString& reason);
  /// Controls have changed.
  void refresh();

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  RunProgress progress() const;
  RunRemainder remainder(const RunState& run) const;
  void showTimeLeft(const RunProgress& progress);
  void showShare(const RunProgress& progress);
  void showNameTaken();
  void end(const RunState& run);
  void tell(const QString& text, bool isSerious);
  void notify(const RunRemainder& remainder);

  QWidget& window_;
  Ui::MainWindow& ui_;
  const MainInterface& interface_;
  const Tally& tally_;
  std::shared_ptr<DesktopStatus> desktop_;
  QBasicTimer timer_;  // as long as a run lasts
  TimeLeft timeLeft_;
  std::optional<double> shownShare_;
};

}  // namespace kestrova
