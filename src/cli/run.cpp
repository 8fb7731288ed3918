#include "cli/run.h"

#include "app/main_interface.h"
#include "platform/main_queue.h"
#include "report/run_folder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace kestrova::cli {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto refreshInterval = std::chrono::milliseconds(100);

std::string unusable(const Path& folder, const std::string& reason) {
  return cli::quoted(folder.native()) + ": " + reason;
}

Host hostFor(const OrganiseArguments& arguments, std::shared_ptr<FileManager> files) {
  Host host;
  host.files = std::move(files);
  host.jobs = arguments.jobs;
  host.defaults = volatileUserDefaults();
  host.power = systemPowerAssertions();
  if (!arguments.noRecord && !arguments.dryRun) host.runs = report::runsFolder();
  return host;
}

void applyOptions(MainInterface& interface, const OrganiseArguments& arguments) {
  interface.comboCopy->chooseItem(indexOf(arguments.media));
  interface.comboPhotoFormats->chooseItem(indexOf(arguments.photoFormats));
  interface.comboFolderFormat->chooseItem(indexOf(arguments.folders));
  interface.comboResolution->chooseItem(indexOf(arguments.size));
  interface.chkRotate->setState(arguments.upright);
  interface.chkFilterSmallPhotos->setState(arguments.skipSmallPhotos);
  interface.chkFilterSmallVideos->setState(arguments.skipSmallVideos);
  for (const Path& source : arguments.sources) interface.manager.addSource(source);
  interface.manager.setTarget(arguments.target);
}

Amount amountOf(const Counter& files, const Counter& bytes) { return {files, bytes}; }

Standing standingOf(const MainInterface& interface, const Tally& tally) {
  const auto& manager = interface.manager;
  return {manager.runState().phase, interface.lblStatus->stringValue(),
          amountOf(manager.sTotalCount, manager.sTotalSize), manager.sDuplicateCount, tally.settled()};
}

/// Returns the status of a run that an exception halted, as nobody is there to continue it; nothing if the
/// run ended.
std::optional<QString> waitForEnd(MainInterface& interface, const Tally& tally, const Terminal& terminal) {
  auto& manager = interface.manager;
  const auto hasEnded = [&manager] { return manager.runState().phase == RunPhase::ended; };
  std::optional<QString> halted;
  while (!hasEnded()) {
    const bool isHalted = manager.runState().isHalted;
    if (isHalted && !halted) {
      MainQueue::instance().runPending();  // the exception's text was posted before the halt
      halted = interface.lblStatus->stringValue();
    }
    if (terminal.stop.take() || isHalted) manager.stopProcess();
    terminal.progress.show(standingOf(interface, tally));
    MainQueue::instance().runUntil([&] { return hasEnded() || terminal.stop.isPending(); }, refreshInterval);
  }
  manager.processQueue->waitUntilIdle();
  return halted;
}

QString statusOf(RunEnd end, const QString& shown) {
  if (end == RunEnd::nothingFound) return QStringLiteral("Nothing to do");
  return end == RunEnd::stopped ? QStringLiteral("Stopped") : shown;
}

/// Where a summary counts the source files of an outcome; null for written files, which are counted by their
/// sizes in the target.
Amount Summary::*placeOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::copied:
    case Outcome::resized:
    case Outcome::rewritten:
      return nullptr;
    case Outcome::duplicate:
      return &Summary::duplicates;
    case Outcome::sameContent:
      return &Summary::sameContent;
    case Outcome::small:
      return &Summary::small;
    case Outcome::exists:
      return &Summary::alreadyThere;
    case Outcome::nameTaken:
      return &Summary::nameTaken;
    case Outcome::failed:
      return &Summary::failed;
    case Outcome::unreadable:
      return &Summary::unreadable;
    case Outcome::notReached:
      return &Summary::notReached;
  }
  return nullptr;
}

Summary summaryOf(const OrganiseManager& manager, const Findings& findings) {
  Summary summary;
  summary.found = {amountOf(manager.sPhotoCount, manager.sPhotoSize),
                   amountOf(manager.sVideoCount, manager.sVideoSize),
                   amountOf(manager.sTotalCount, manager.sTotalSize)};
  summary.written = {amountOf(manager.tPhotoCount, manager.tPhotoSize),
                     amountOf(manager.tVideoCount, manager.tVideoSize),
                     amountOf(manager.tTotalCount, manager.tTotalSize)};
  summary.rewritten = amountOf(manager.tRotatedCount, manager.tRotatedSize);
  for (const auto& [outcome, amount] : findings.tally.amounts()) {
    if (Amount Summary::*const place = placeOf(outcome)) summary.*place += amount;
  }
  summary.leftBehind = findings.leftBehind;
  summary.sidecars = manager.companions.sidecars();
  summary.videosWithoutStill = manager.companions.videosWithoutStill();
  summary.unreadableFolders = findings.unreadable;
  summary.record = manager.recordFolder();
  summary.recordFailure = manager.recordFailure();
  if (const auto error = findings.reportError()) summary.reportFailure = error->message;
  return summary;
}

}  // namespace

std::optional<FileError> Findings::reportError() const {
  if (!report) return std::nullopt;
  report->flush();
  return report->error();
}

void Findings::add(const report::Row& row) {
  if (report) report->add(row);
  if (keepsRows) rows.push_back(row);
  if (const auto* folder = std::get_if<report::UnreadableRow>(&row)) unreadable.push_back(*folder);
  if (const auto* file = std::get_if<report::LeftBehindRow>(&row)) {
    leftBehind.add(file->source.filename().native(), file->sourceSize);
  }
}

std::string unusableFolder(const OrganiseArguments& arguments, const FileManager& files) {
  for (const Path& source : arguments.sources) {
    const auto attributes = files.attributesOfItem(source);
    if (!attributes) return unusable(source, attributes.error().message);
    if (!attributes->isDirectory) return unusable(source, "this source is not a folder");
    if (access(source.c_str(), R_OK | X_OK) != 0 && errno == EACCES)
      return unusable(source, std::strerror(EACCES));
  }
  const auto target = files.attributesOfItem(arguments.target);
  if (target && !target->isDirectory) return unusable(arguments.target, "this target is not a folder");
  const auto canWrite = files.checkTarget(arguments.target);
  return canWrite ? "" : unusable(arguments.target, canWrite.error().message);
}

Summary organise(const OrganiseArguments& arguments, std::shared_ptr<FileManager> files,
                 const Terminal& terminal, Findings& findings) {
  const auto start = Clock::now();
  MainInterface interface(hostFor(arguments, std::move(files)));
  MainQueue::instance().runPending();  // the controller loads its settings first
  applyOptions(interface, arguments);
  interface.manager.verdictListener = [&](const Verdict& verdict) { findings.tally.add(verdict); };
  interface.manager.rowListener = [&](const report::Row& row) { findings.add(row); };
  interface.manager.listensToFileRows = findings.takesFileRows();
  interface.manager.startProcess();
  const auto halted = waitForEnd(interface, findings.tally, terminal);

  Summary summary = summaryOf(interface.manager, findings);
  summary.end = interface.manager.runState().end.value_or(RunEnd::error);
  summary.status = statusOf(summary.end, halted.value_or(interface.lblStatus->stringValue()));
  summary.elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  return summary;
}

}  // namespace kestrova::cli
