#include "app/organise_manager.h"
#include "execution/work_limits.h"
#include "platform/log.h"
#include "report/left_behind.h"
#include "scan/fingerprints_ahead.h"
#include "scan/folder_walk.h"
#include "scan/media_classification.h"

namespace kestrova {

namespace {

/// The verdict on a file that is set aside because it seems to equal another.
Verdict setAside(const WalkedFile& file, const Sighting& sighting, Outcome outcome) {
  Verdict verdict{
      .outcome = outcome, .source = file.path, .sourceSize = file.size, .original = sighting.original};
  if (file.error) {
    verdict.becomeUnreadable(file.error->message);
  } else if (!sighting.readError.empty()) {
    verdict.becomeUnreadable(sighting.readError);
  }
  return verdict;
}

report::LeftBehindRow leftBehindRow(const WalkedFile& file) {
  return {.source = file.path,
          .extension = report::leftBehindExtension(file.path.filename().native()),
          .sourceSize = file.size};
}

}  // namespace

void OrganiseManager::analyseSourceOperation(const InvocationOperation& operation) {
  beginScan(operation);
  const WalkEnd end = walkSources(operation);
  if (end == WalkEnd::cancelled) {
    log(QStringLiteral("CANCELLLED"));
    setStatus(QStringLiteral("Stopped"));
    releaseAssertion();
    settleUnreachedFrom(0);
    return;
  }
  if (end == WalkEnd::suspended) {
    log(QStringLiteral("SUSPENDED"));
    settleUnreachedFrom(0);
    endEarly(RunEnd::stopped);
    return;
  }
  postFrom(operation, [this] {
    sourceProgress->stopAnimation();
    sourceProgress->setHidden(true);
    processBar->setHidden(false);
  });
  if (fileList.empty()) {
    endEarly(RunEnd::nothingFound);
  } else if (operation.isCancelled() || processQueue->isSuspended()) {
    settleUnreachedFrom(0);
    endEarly(RunEnd::stopped);
  } else {
    queuePlanner(operation);
  }
}

void OrganiseManager::beginScan(const InvocationOperation& operation) {
  appStatus = 1;
  runTarget_ = targetPath.get().value_or(Path());
  mayWorkAhead_ = false;
  jobs_ = host_.jobs ? *host_.jobs : usualJobs(sourcePathList.get(), runTarget_);
  folderMaker_ = FolderMaker(runTarget_);
  beginRecord();
  postFrom(operation, [this] { buttonStart->setEnabled(false); });
  setStatus(QStringLiteral("Process started!"));
  assertionID = host_.power->create(QStringLiteral("Kestrova Process")).value_or(noAssertion);
  fileList.clear();
  duplicateList.clear();
  hashList.clear();
  companions = Companions();
  resetCounters();
  clearLabels(operation);
}

void OrganiseManager::resetCounters() {
  for (Counter* counter :
       {&sPhotoCount,    &sPhotoSize,      &sVideoCount,   &sVideoSize,   &sTotalCount,     &sTotalSize,
        &sDuplicateSize, &sDuplicateCount, &tPhotoCount,   &tPhotoSize,   &tVideoCount,     &tVideoSize,
        &tTotalCount,    &tTotalSize,      &tAlreadyCount, &tAlreadySize, &tRotatedSize,    &tRotatedCount,
        &tFilteredCount, &tFilteredSize,   &targetCount,   &targetSize,   &targetExistCount}) {
    *counter = 0;
  }
}

// The video and total labels of the source side keep the last run's numbers until the first file is counted.
void OrganiseManager::clearLabels(const InvocationOperation& operation) {
  postFrom(operation, [this] {
    processBar->setHidden(true);
    sourceProgress->setHidden(false);
    sourceProgress->setIndeterminate(true);
    sourceProgress->startAnimation();
    for (const auto* label :
         {&lblDuplicateCount, &lblDuplicateSize,    &lblPhotoCount,          &lblPhotoSize,
          &lblSourceCount,    &lblSourceDuplicates, &lblSourceDuplicateSize, &lblSourceSize,
          &trgExistCount,     &trgExistSize,        &trgPhotoCount,          &trgPhotoSize,
          &trgRotatedCount,   &trgRotatedSize,      &trgTotalCount,          &trgTotalSize,
          &trgVideoCount,     &trgVideoSize,        &trgFilteredCount,       &trgFilteredSize}) {
      (*label)->setStringValue(QString());
    }
  });
  forgetPendingRefreshes();
}

OrganiseManager::WalkEnd OrganiseManager::walkSources(const InvocationOperation& operation) {
  const ExtensionList filter = mediaFilter(optionAt<Media>(comboCopy->indexOfSelectedItem()),
                                           extensionImages.get(), extensionVideo.get());
  WalkEnd end = WalkEnd::complete;
  FolderWalk walk;
  walk.wants = [&filter](std::string_view name) { return filter.accepts(name); };
  walk.keepsGoing = [&] {
    if (operation.isCancelled())
      end = WalkEnd::cancelled;
    else if (processQueue->isSuspended())
      end = WalkEnd::suspended;
    return end == WalkEnd::complete;
  };
  FingerprintsAhead ahead(*host_.files, fileList, hashList, jobs_ - 1);
  ahead.keepsGoing = walk.keepsGoing;
  walk.visits = [&](const WalkedFile& file) {
    ahead.expect(file);
    ahead.inTurn(file, [&](const WalkedFile& next) { takeFile(next, ahead.judge(next)); });
  };
  if (tellsRows()) {
    walk.leaves = [&](const WalkedFile& file) {
      ahead.inTurn(file, [this](const WalkedFile& next) { leaveFile(next); });
    };
  }
  walk.cannotRead = [&](const Path& path, const FileError& error) {
    ahead.inTurn([this, path, error] { tellUnreadable(path, error); });
  };
  for (const Path& source : sourcePathList.get()) {
    setStatus(QStringLiteral("Analyzing source folders"));
    if (!walkFolder(*host_.files, source, walk)) break;
  }
  ahead.finish();
  companions.finish();
  return end;
}

void OrganiseManager::leaveFile(const WalkedFile& file) {
  companions.see(file.path.native(), false);
  tellRow(leftBehindRow(file));
}

void OrganiseManager::takeFile(const WalkedFile& file, const Sighting& sighting) {
  companions.see(file.path.native(), true);
  using Kind = Sighting::Kind;
  switch (sighting.kind) {
    case Kind::newFile:
      addNew(file, "NEW : ");
      break;
    case Kind::sameFileSize:
      addNew(file, "SAME FILE SIZE : ");
      break;
    case Kind::duplicate:
      addDuplicate(file, sighting);
      break;
    case Kind::sameContent:
      settle(setAside(file, sighting, Outcome::sameContent));
      break;
  }
}

void OrganiseManager::addNew(const WalkedFile& file, const char* label) {
  increaseSourceCount(extensionOfPath(file.path), file.size);
  if (isLogging())
    log(QString::fromLatin1(label) + displayPath(file.path) + QStringLiteral(" : %1").arg(file.size));
}

void OrganiseManager::addDuplicate(const WalkedFile& file, const Sighting& sighting) {
  if (isLogging()) {
    const auto fingerprint = QString::fromStdString(sighting.fingerprint);
    log(QStringLiteral("DUPLICATE -----> ") + displayPath(file.path) +
        QStringLiteral(" : %1 : %2").arg(fingerprint).arg(file.size));
  }
  duplicateList.add(file.path.native());
  settle(setAside(file, sighting, Outcome::duplicate));
}

// A Stop that comes while the planner is being added must reach it too.
void OrganiseManager::queuePlanner(const InvocationOperation& operation) {
  const auto planner = std::make_shared<InvocationOperation>();
  planner->init(this, &OrganiseManager::analyseAndDecideOperation, &OrganiseManager::skipPlanning);
  processQueue->addOperation(planner);
  if (operation.isCancelled()) planner->cancel();
}

}  // namespace kestrova
