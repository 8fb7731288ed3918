#include "app/organise_manager.h"
#include "planning/calendar.h"
#include "planning/examined_ahead.h"
#include "planning/plan_file.h"
#include "platform/file_url.h"
#include "platform/log.h"

#include <exception>
#include <utility>

namespace kestrova {

void OrganiseManager::analyseAndDecideOperation(const InvocationOperation& operation) {
  appStatus = 2;
  enter(RunPhase::planning);
  planList_ = std::make_shared<PlanList>(targetPath.get().value_or(Path()));
  processQueue->setSupplier([this, next = std::size_t{0}]() mutable { return makeOperation(next++); });
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
  ExaminedAhead ahead(fileList, *host_.files, jobs_ - 1);
  for (std::size_t index = 0; index < fileList.size(); ++index) {
    if (planner.isCancelled()) {
      log(QStringLiteral("CANCELLLED"));
      settleUnreachedFrom(index);
      return;
    }
    statusLine_.showForFile([index] { return QStringLiteral("Deciding operations %1").arg(index + 1); });
    planOrSettle(index, ahead, planner);
  }
  endPlanning(planner);
}

// A file that raises an exception, and all files after it, are not written in this run.
void OrganiseManager::planOrSettle(std::size_t index, ExaminedAhead& ahead,
                                   const InvocationOperation& planner) {
  const FileList::Entry file = fileList[index];
  try {
    const PlanningContext context = planningContext();
    const ExaminedFile examined = ahead.next(readingOptions(context));
    auto planned = planFile(file.path, examined, context, *host_.files);
    if (planned) {
      queueEntry(*std::move(planned), planner);
    } else {
      settle(planned.error());
      endIfTargetIsLost(planned.error());
    }
  } catch (const std::exception& error) {
    settle({.outcome = Outcome::failed, .source = file.path, .sourceSize = file.size, .error = error.what()});
    settleUnreachedFrom(index + 1);
    throw;
  }
}

void OrganiseManager::skipPlanning(const InvocationOperation&) { settleUnreachedFrom(0); }

void OrganiseManager::settleUnreachedFrom(std::size_t first) {
  for (std::size_t index = first; index < fileList.size(); ++index) {
    const FileList::Entry file = fileList[index];
    settle({.outcome = Outcome::notReached, .source = file.path, .sourceSize = file.size});
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

// A Stop that comes while a file is being queued must reach it too.
void OrganiseManager::queueEntry(PlanEntry entry, const InvocationOperation& planner) {
  entry.planned.isNameTaken = entry.to && planList_->hasTarget(*entry.to);
  planList_->append(entry);
  processQueue->addDeferred();
  if (planner.isCancelled()) processQueue->cancelAllOperations();
}

std::shared_ptr<InvocationOperation> OrganiseManager::makeOperation(std::size_t planned) {
  workAhead_.passOver(planned);
  planList_->releaseBefore(planned);
  const PlanEntry entry = planList_->entry(planned);
  const auto handler = entry.handler == PlanEntry::Handler::resize ? &OrganiseManager::resizeOperation
                                                                   : &OrganiseManager::copyOperation;
  auto operation = std::make_shared<InvocationOperation>();
  operation->init(this, handler, recordOf(entry, operation, planned), &OrganiseManager::skipOperation);
  return operation;
}

void OrganiseManager::endPlanning(const InvocationOperation& planner) {
  if (heldTarget_) heldTarget_->followNoNewLinks();
  planList_->finish();
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
  mayWorkAhead_ = heldTarget_ && jobs_ > 1;
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
