#include "window/run_display.h"

#include "ui_main_window.h"
#include "window/shown_text.h"

#include <QStyle>

namespace kestrova {

namespace {

constexpr int tickMilliseconds = 500;

}  // namespace

RunDisplay::RunDisplay(QWidget& window, Ui::MainWindow& ui, const MainInterface& interface,
                       const Tally& tally, std::shared_ptr<DesktopStatus> desktop)
    : window_(window), ui_(ui), interface_(interface), tally_(tally), desktop_(std::move(desktop)) {
  ui_.remainderBox->hide();
  ui_.buttonOpenTarget->hide();
}

void RunDisplay::begin() {
  timeLeft_ = TimeLeft();
  ui_.remainderBox->hide();
  ui_.buttonOpenTarget->hide();
  timer_.start(tickMilliseconds, this);
}

void RunDisplay::timerEvent(QTimerEvent*) { refresh(); }

void RunDisplay::refresh() {
  const RunProgress now = progress();
  ui_.progressText->setText(progressText(now));
  const QString title = titleText(now);
  if (window_.windowTitle() != title) window_.setWindowTitle(title);
  showTimeLeft(now);
  showShare(now);
  showNameTaken();
  if (timer_.isActive() && isOver(now)) end(now);
}

// The title is the last thing that a run sets, but for one that finds nothing, which leaves it.
bool RunDisplay::isOver(const RunProgress& progress) const {
  const bool isReported = interface_.buttonStart->title() == QStringLiteral("Start");
  return !progress.isRunning && (isReported || progress.found == 0);
}

// Planning holds the queue as well, but that is work.
bool RunDisplay::isPaused() const {
  return interface_.buttonStart->isEnabled() && interface_.manager.processQueue->isSuspended();
}

RunProgress RunDisplay::progress() const {
  using Stage = RunProgress::Stage;
  const ProgressIndicator& search = *interface_.sourceProgress;
  const ProgressIndicator& bar = *interface_.processBar;
  const auto stage = !search.isIndeterminate() ? Stage::none  // what the first search makes it, for good
                     : !search.isHidden()      ? Stage::scanning
                     : bar.isIndeterminate()   ? Stage::planning
                                               : Stage::executing;
  const bool running = interface_.manager.isRunning();
  return {.stage = stage,
          .found = interface_.manager.sTotalCount,
          .done = static_cast<std::int64_t>(bar.doubleValue()),
          .isRunning = running,
          .isPaused = running && isPaused()};
}

void RunDisplay::showTimeLeft(const RunProgress& progress) {
  if (progress.isPaused) timeLeft_.pause();
  const bool isWorking = progress.isRunning && !progress.isPaused;
  if (!isWorking || progress.stage != RunProgress::Stage::executing) return ui_.timeLeftText->clear();
  const auto& manager = interface_.manager;
  const Amount settled = tally_.settled();
  const auto left = timeLeft_.guess(workOf(settled.files, settled.bytes),
                                    workOf(manager.sTotalCount, manager.sTotalSize), TimeLeft::Clock::now());
  ui_.timeLeftText->setText(left ? timeLeftText(*left) : QString());
}

void RunDisplay::showShare(const RunProgress& progress) {
  const auto percent = progress.isRunning ? progress.percent() : std::nullopt;
  const auto share = percent ? std::optional(static_cast<double>(*percent) / 100) : std::nullopt;
  if (share == shownShare_) return;
  shownShare_ = share;
  if (desktop_) desktop_->showProgress(share);
}

// The control keeps the last run's number until this run counts one.
void RunDisplay::showNameTaken() {
  ui_.lblTargetExistCount->setVisible(interface_.manager.targetExistCount > 0);
}

RunRemainder RunDisplay::remainder(const RunProgress& progress) const {
  const auto& manager = interface_.manager;
  return {.foundNothing = progress.found == 0 && !manager.hasstopped,
          .failed = tally_.of(Outcome::failed).files + tally_.of(Outcome::unreadable).files,
          .nameTaken = tally_.of(Outcome::nameTaken).files,
          .alreadyThere = tally_.of(Outcome::exists).files};
}

void RunDisplay::end(const RunProgress& progress) {
  timer_.stop();
  const RunRemainder left = remainder(progress);
  showRemainder(left);
  const auto target = interface_.manager.targetPath.get();
  std::error_code ignored;
  const bool isThere = target && std::filesystem::is_directory(*target, ignored);
  ui_.buttonOpenTarget->setVisible(isThere && !left.foundNothing);
  if (!window_.isActiveWindow() && !interface_.manager.hasstopped) notify(left);
}

void RunDisplay::showRemainder(const RunRemainder& remainder) {
  const auto sign = remainder.isSerious() ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
  const int size = window_.style()->pixelMetric(QStyle::PM_SmallIconSize);
  ui_.remainderSign->setPixmap(window_.style()->standardIcon(sign).pixmap(size));
  ui_.remainderText->setText(remainderText(remainder));
  ui_.remainderBox->setVisible(!ui_.remainderText->text().isEmpty());
}

void RunDisplay::notify(const RunRemainder& remainder) {
  if (!desktop_) return;
  const QString text = remainderText(remainder);
  const QString written =
      remainder.foundNothing ? QString() : writtenText(interface_.manager.tTotalCount) + u' ';
  desktop_->notify(shownText(interface_.lblStatus->stringValue()), (written + text).trimmed());
}

}  // namespace kestrova
