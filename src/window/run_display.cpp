#include "window/run_display.h"

#include "ui_main_window.h"
#include "window/shown_text.h"

#include <QStyle>

namespace kestrova {

namespace {

constexpr int tickMilliseconds = 500;

/// Where the remainder of a run counts files of an outcome; null for outcomes that are not shown.
std::int64_t RunRemainder::*placeOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::failed:
    case Outcome::unreadable:
      return &RunRemainder::failed;
    case Outcome::nameTaken:
      return &RunRemainder::nameTaken;
    case Outcome::exists:
      return &RunRemainder::alreadyThere;
    case Outcome::copied:
    case Outcome::resized:
    case Outcome::rewritten:
    case Outcome::duplicate:
    case Outcome::sameContent:
    case Outcome::small:
    case Outcome::notReached:
      return nullptr;
  }
  return nullptr;
}

}  // namespace

RunDisplay::RunDisplay(Places places)
    : window_(places.window),
      ui_(places.ui),
      interface_(places.interface),
      tally_(places.tally),
      desktop_(std::move(places.desktop)) {
  ui_.remainderBox->hide();
  ui_.buttonOpenTarget->hide();
}

void RunDisplay::begin() {
  timeLeft_ = TimeLeft();
  ui_.remainderBox->hide();
  ui_.buttonOpenTarget->hide();
  timer_.start(tickMilliseconds, this);
}

void RunDisplay::refuse(const QString& reason) {
  ui_.buttonOpenTarget->hide();
  tell(unusableTargetText(reason), true);
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
  if (timer_.isActive() && now.run.phase == RunPhase::ended) end(now.run);
}

RunProgress RunDisplay::progress() const {
  const auto& manager = interface_.manager;
  return {.run = manager.runState(),
          .found = manager.sTotalCount,
          .done = static_cast<std::int64_t>(interface_.processBar->doubleValue())};
}

void RunDisplay::showTimeLeft(const RunProgress& progress) {
  const bool isWorking = progress.run.phase == RunPhase::executing && !progress.run.isPaused;
  if (progress.run.isPaused) timeLeft_.pause();
  if (!isWorking) {
    ui_.timeLeftText->clear();
    return;
  }
  const auto& manager = interface_.manager;
  const Amount settled = tally_.settled();
  const auto left = timeLeft_.guess(workOf(settled.files, settled.bytes),
                                    workOf(manager.sTotalCount, manager.sTotalSize), TimeLeft::Clock::now());
  ui_.timeLeftText->setText(left ? timeLeftText(*left) : QString());
}

void RunDisplay::showShare(const RunProgress& progress) {
  const auto percent = progress.percent();
  const auto share = percent ? std::optional(static_cast<double>(*percent) / 100) : std::nullopt;
  if (share == shownShare_) return;
  shownShare_ = share;
  if (desktop_) desktop_->showProgress(share);
}

// The control keeps the last run's number until this run counts one.
void RunDisplay::showNameTaken() {
  ui_.lblTargetExistCount->setVisible(interface_.manager.targetExistCount > 0);
}

RunRemainder RunDisplay::remainder(const RunState& run) const {
  RunRemainder remainder{.foundNothing = run.end == RunEnd::nothingFound};
  for (const auto& [outcome, amount] : tally_.amounts()) {
    if (const auto place = placeOf(outcome)) remainder.*place += amount.files;
  }
  return remainder;
}

void RunDisplay::end(const RunState& run) {
  timer_.stop();
  const RunRemainder left = remainder(run);
  tell(remainderText(left), left.isSerious());
  const auto target = interface_.manager.targetPath.get();
  std::error_code ignored;
  const bool isThere = target && std::filesystem::is_directory(*target, ignored);
  ui_.buttonOpenTarget->setVisible(isThere && !left.foundNothing);
  if (!window_.isActiveWindow() && run.end != RunEnd::stopped) notify(left);
}

void RunDisplay::tell(const QString& text, bool isSerious) {
  const auto sign = isSerious ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
  const int size = window_.style()->pixelMetric(QStyle::PM_SmallIconSize);
  ui_.remainderSign->setPixmap(window_.style()->standardIcon(sign).pixmap(size));
  ui_.remainderText->setText(text);
  ui_.remainderBox->setVisible(!text.isEmpty());
}

void RunDisplay::notify(const RunRemainder& remainder) {
  if (!desktop_) return;
  const QString text = remainderText(remainder);
  const QString written =
      remainder.foundNothing ? QString() : writtenText(interface_.manager.tTotalCount) + u' ';
  desktop_->notify(shownText(interface_.lblStatus->stringValue()), (written + text).trimmed());
}

}  // namespace kestrova
