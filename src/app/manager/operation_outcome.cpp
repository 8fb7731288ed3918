#include "app/organise_manager.h"
#include "execution/error_codes.h"
#include "execution/work_limits.h"
#include "platform/log.h"

#include <cerrno>
#include <exception>
#include <utility>

namespace kestrova {

// Begins with the first operation, which has created the target folder: files wait for their names there.
std::optional<PreparedFile> OrganiseManager::takePrepared(const OperationRecord& record) {
  if (!record.index()) return std::nullopt;
  if (std::exchange(mayWorkAhead_, false)) {
    const auto wishes = [this](const PlanEntry& entry) { return wishesFor(recordedResolution(entry)); };
    workAhead_.start(planList_, host_.files, wishes, workLimits(jobs_));
    workAhead_.setPaused(processQueue->isSuspended());
  }
  return workAhead_.take(*record.index());
}

// With nothing prepared, what was left of the volume, of memory and of open files is there again.
bool OrganiseManager::makesRoom(const FileError& error) {
  const bool lacksRoom = error.kind == FileError::Kind::noSpace || error.code == EMFILE ||
                         error.code == ENFILE || error.code == ENOMEM;
  return lacksRoom && workAhead_.giveUp();
}

void OrganiseManager::cancelOperations() {
  workAhead_.stop();
  processQueue->cancelAllOperations();
}

// A missing folder is what could not be created: the reason for that says more.
FileError OrganiseManager::causeOf(const FileError& error, const Path& file) {
  if (error.kind != FileError::Kind::notFound) return error;
  const auto created = host_.files->createDirectory(file.parent_path());
  return created ? error : created.error();
}

void OrganiseManager::settleFailure(Verdict& verdict, const FileError& error) {
  const bool isUnreadable = error.kind == FileError::Kind::unreadable;
  verdict.outcome = isUnreadable ? Outcome::unreadable : Outcome::failed;
  verdict.error = error.message;
  verdict.errorCode = error.code;
  settle(verdict);
}

void OrganiseManager::settleException(const OperationRecord& record, const std::exception& error) {
  Verdict verdict = plannedVerdict(record);
  verdict.outcome = Outcome::failed;
  verdict.error = error.what();
  settle(verdict);
}

void OrganiseManager::skipOperation(const OperationRecord& record) {
  Verdict verdict = plannedVerdict(record);
  verdict.outcome = Outcome::notReached;
  settle(verdict);
}

// Where the plan knows nothing, the file is asked.
Verdict OrganiseManager::verdictOn(const OperationRecord& record) const {
  Verdict verdict = plannedVerdict(record);
  if (verdict.sourceModified) return verdict;
  if (const auto source = host_.files->attributesOfItem(verdict.source)) {
    verdict.sourceSize = source->size;
    verdict.sourceModified = source->modified;
  }
  return verdict;
}

void OrganiseManager::endForFullVolume(const QString& logText) {
  log(logText);
  endEarly(RunEnd::outOfSpace);
  cancelOperations();
  post([this] { buttonStart->setTitle(QStringLiteral("Start")); });
  setStatus(QStringLiteral("Not enough space!"));
  haserror = true;
}

// The files that are left would fail one by one for the same reason.
void OrganiseManager::endIfTargetIsLost(const Verdict& verdict) {
  if (verdict.outcome != Outcome::failed || !meansVolumeIsLost(verdict.errorCode)) return;
  endEarly(RunEnd::error);
  haserror = true;
  cancelOperations();
  setStatus(QStringLiteral("The target folder cannot be used: ") + QString::fromStdString(verdict.error));
  if (runState().phase == RunPhase::planning) releaseAssertion();  // nobody observes the queue yet
  post([this] {
    resumeRun();
    showEnded();
  });
}

void OrganiseManager::haltForException(const QString& status, const QString& logText) {
  setStatus(status);
  log(logText);
  haltRun();
}

}  // namespace kestrova
