#include "app/organise_manager.h"
#include "planning/calendar.h"
#include "planning/plan_file.h"
#include "platform/file_url.h"
#include "platform/log.h"

#include <exception>
#include <utility>

namespace kestrova {

void OrganiseManager::analyseAndDecideOperation(const InvocationOperation& operation) {
  appStatus = 2;
  enter(RunPhase::planning);
  plannedTargets_.clear();
  postFrom(operation, [this] {
    processBar->setIndeterminate(true);
    processBar->startAnimation();
    buttonStart->setEnabled(false);
  });
  processQueue->setSuspended(true);
  processQueue->setMaxConcurrentOperationCount(1);
  refreshTimeZone();
  if (const auto target = targetPath.get()) heldTarget_ = host_.files->holdTarget(*target);
  try {
    planFiles(operation);
  } catch (const std::exception& error) {
    // The text names another method, but users search for it.
    const auto text = QStringLiteral("EXCEPTION copyFiles : ") + QString::fromUtf8(error.what());
    haltForException(text, text);
  }
}

void OrganiseManager::planFiles(const InvocationOperation& planner) {
  std::int64_t number = 0;
  for (auto entry = fileList.begin(); entry != fileList.end(); ++entry) {
    if (planner.isCancelled()) {
      log(QStringLiteral("CANCELLLED"));
      settleUnreached(entry);
      return;
    }
    setStatus(QStringLiteral("Deciding operations %1").arg(++number));
    planOrSettle(entry, planner);
  }
  endPlanning(planner);
}

// A file that raises an exception, and all files after it, are not written in this run.
void OrganiseManager::planOrSettle(FileList::Iterator entry, const InvocationOperation& planner) {
  try {
    auto planned = planFile(entry->path, planningContext(), *host_.files);
    if (planned) {
      queueEntry(*std::move(planned), planner);
    } else {
      settle(planned.error());
      endIfTargetIsLost(planned.error());
    }
  } catch (const std::exception& error) {
    settle({.outcome = Outcome::failed,
            .source = entry->path,
            .sourceSize = entry->size,
            .error = error.what()});
    settleUnreached(std::next(entry));
    throw;
  }
}

void OrganiseManager::skipPlanning(const InvocationOperation&) { settleUnreached(fileList.begin()); }

void OrganiseManager::settleUnreached(FileList::Iterator first) {
  for (auto entry = first; entry != fileList.end(); ++entry) {
    settle({.outcome = Outcome::notReached, .source = entry->path, .sourceSize = entry->size});
  }
}

// The options are read for each file: the user may change them during planning.
PlanningContext OrganiseManager::planningContext() const {
  return {.options = planningOptions(),
          .photos = extensionImages.get(),
          .videos = extensionVideo.get(),
          .months = months,
          .days = days,
          .target = targetPath.get(),
          .runStart = starttime ? *starttime : host_.now()};
}

PlanningOptions OrganiseManager::planningOptions() const {
  return {.filterSmallPhotos = chkFilterSmallPhotos->state() == CheckBox::on,
          .filterSmallVideos = chkFilterSmallVideos->state() == CheckBox::on,
          .rotate = chkRotate->state() == CheckBox::on,
          .folderFormat = optionAt<FolderFormat>(comboFolderFormat->indexOfSelectedItem()),
          .resolution = optionAt<Resolution>(comboResolution->indexOfSelectedItem())};
}

// Hashes take a tenth of the memory of names. If two are equal by chance, the second file is still written.
bool OrganiseManager::takeTarget(const Path& target) {
  return plannedTargets_.insert(std::hash<std::string>()(target.native())).second;
}

// A Stop that comes while a file is being queued must reach it too.
void OrganiseManager::queueEntry(PlanEntry entry, const InvocationOperation& planner) {
  entry.planned.isNameTaken = entry.to && !takeTarget(*entry.to);
  const auto handler = entry.handler == PlanEntry::Handler::resize ? &OrganiseManager::resizeOperation
                                                                   : &OrganiseManager::copyOperation;
  const auto operation = std::make_shared<InvocationOperation>();
  operation->init(this, handler, recordOf(entry, operation), &OrganiseManager::skipOperation);
  processQueue->addOperation(operation);
  if (planner.isCancelled()) operation->cancel();
}

void OrganiseManager::endPlanning(const InvocationOperation& planner) {
  if (heldTarget_) heldTarget_->followNoNewLinks();
  postFrom(planner, [this] {
    processBar->stopAnimation();
    processBar->setIndeterminate(false);
    processBar->setMaxValue(static_cast<double>(sTotalCount));
    showProgress();
    buttonStart->setEnabled(true);
  });
  processQueue->addObserver("operations", [this](std::string_view keyPath, const OperationQueue& queue) {
    observeValueForKeyPath(keyPath, queue);
  });
  enter(RunPhase::executing);
  processQueue->setSuspended(false);
}

std::optional<Date> OrganiseManager::getModifiedDate(std::string_view url) const {
  const auto path = pathOfFileUrl(url);
  if (!path) return std::nullopt;
  const auto attributes = host_.files->attributesOfItem(*path);
  if (!attributes) return std::nullopt;
  return attributes->modified;
}

// Not what its name promises, but callers expect this.
QString OrganiseManager::textMonth(int month) const {
  return month >= 1 && month <= 11 ? QStringLiteral("January") : QString();
}

}  // namespace kestrova
