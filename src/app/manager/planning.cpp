#include "app/organise_manager.h"
#include "planning/calendar.h"
#include "planning/operation_decision.h"
#include "platform/file_url.h"
#include "platform/log.h"
#include "scan/media_classification.h"

#include <exception>

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
    // The text names another method; it is what users search for.
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

// Of a file that raises an exception, and of all after it, nothing comes in this run.
void OrganiseManager::planOrSettle(FileList::Iterator entry, const InvocationOperation& planner) {
  try {
    planFile(entry->path, planner);
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

void OrganiseManager::planFile(const Path& file, const InvocationOperation& planner) {
  const PlanningOptions options = planningOptions();
  const FileFacts facts = factsOf(file);
  if (isSmallFile(facts, options)) return leaveOut(file, facts.size);
  if (isLogging()) log(QStringLiteral("IMAGE  ") + displayPath(file));

  const ImageMetadata metadata = facts.isPhoto ? imageMetadata(read10KFromFile(file)) : ImageMetadata();
  if (metadata.pixelWidth && metadata.pixelHeight && isLogging()) {
    log(QStringLiteral("Pixel Width : %1  Pixel Height : %2")
            .arg(*metadata.pixelWidth)
            .arg(*metadata.pixelHeight));
  }
  if (isSmallPicture(metadata, options)) return leaveOut(file, facts.size);

  const auto target = targetOf(file, facts, dateOf(file, metadata), options.folderFormat);
  const FileResult<bool> exists = target ? host_.files->fileExists(*target) : false;
  if (!exists || *exists) {
    settle({.outcome = exists ? Outcome::exists : Outcome::failed,
            .source = file,
            .target = target,
            .sourceSize = facts.size,
            .error = exists ? std::string() : exists.error().message});
    return;
  }
  queueEntry({chooseHandler(facts, metadata, options),
              file,
              target,
              metadata.orientation,
              options.resolution,
              {.size = facts.size, .isNameTaken = target && !takeTarget(*target)}},
             planner);
}

PlanningOptions OrganiseManager::planningOptions() const {
  return {.filterSmallPhotos = chkFilterSmallPhotos->state() == CheckBox::on,
          .filterSmallVideos = chkFilterSmallVideos->state() == CheckBox::on,
          .rotate = chkRotate->state() == CheckBox::on,
          .folderFormat = optionAt<FolderFormat>(comboFolderFormat->indexOfSelectedItem()),
          .resolution = optionAt<Resolution>(comboResolution->indexOfSelectedItem())};
}

FileFacts OrganiseManager::factsOf(const Path& file) const {
  const QString extension = pathExtension(file);
  return {sizeOfFile(file), isPhoto(extension), isVideo(extension)};
}

// Small videos are counted with the small photos.
void OrganiseManager::leaveOut(const Path& file, std::uint64_t size) {
  settle({.outcome = Outcome::small, .source = file, .sourceSize = size});
}

// Hashes take a tenth of the memory of names. Where two are equal by chance, the second file is written all
// the same.
bool OrganiseManager::takeTarget(const Path& target) {
  return plannedTargets_.insert(std::hash<std::string>()(target.native())).second;
}

// A file that has no date at all counts as one of today: of the start of the run.
Date OrganiseManager::dateOf(const Path& file, const ImageMetadata& metadata) const {
  if (metadata.captureDate) return *metadata.captureDate;
  if (const auto modified = getModifiedDate(fileUrlString(file))) return *modified;
  return starttime.value_or(host_.now());
}

std::optional<Path> OrganiseManager::targetOf(const Path& file, const FileFacts& facts, Date date,
                                              FolderFormat format) const {
  const auto target = targetPath.get();
  if (!target) return std::nullopt;
  const DateParts parts = splitDate(date);
  auto folder = targetFolder(*target, format, parts, months, days);
  if (!folder) return std::nullopt;
  return *folder / targetFileName(mediaKindOf(facts), parts, facts.size, pathExtension(file));
}

// A Stop that comes while a file is being queued must reach it too.
void OrganiseManager::queueEntry(const PlanEntry& entry, const InvocationOperation& planner) {
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

// Not what its name promises, but callers know it so.
QString OrganiseManager::textMonth(int month) const {
  return month >= 1 && month <= 11 ? QStringLiteral("January") : QString();
}

}  // namespace kestrova
