#include "app/organise_manager.h"
#include "execution/error_codes.h"
#include "model/size_text.h"
#include "platform/log.h"
#include "scan/media_classification.h"

#include <cerrno>
#include <exception>

namespace kestrova {

void OrganiseManager::copyOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    copyRecord(record);
  } catch (const std::exception& error) {
    settleException(record, error);
    // The text names another operation, but users search for it.
    haltForException(QStringLiteral("Error"),
                     QStringLiteral("EXCEPTION rotateOperation : ") + QString::fromUtf8(error.what()));
  }
}

void OrganiseManager::copyRecord(const OperationRecord& record) {
  const auto operation = record.operation();
  if (operation && operation->isCancelled()) {
    skipOperation(record);
    return;
  }
  const Path to = record.file("to").value_or(Path());
  const Path from = record.file("from").value_or(Path());
  const std::string_view extension = extensionOfPath(from);
  const QString number = countText(tTotalCount + 1);
  if (isPhoto(extension)) {
    const QString kind = QString::fromUtf8(extension).toUpper();
    setStatus(QStringLiteral("Copying Photo (%1) %2").arg(kind, number));
  }
  if (isVideo(extension)) setStatus(QStringLiteral("Copying VIDEO ") + number);
  prepareFolderOf(to);
  copyAsItIs(record);
  if (isLogging()) log(displayPath(to));
}

void OrganiseManager::prepareFolderOf(const Path& file) {
  if (!host_.files->isDirectory(file)) createFolder(file);
}

void OrganiseManager::createFolder(const Path& file) {
  const auto created = folderMaker_.create(*host_.files, file.parent_path());
  if (!created)
    log(QStringLiteral("Error creating directory path: ") + QString::fromStdString(created.error().message));
}

void OrganiseManager::copyFile(const Path& from, const Path& to) {
  copyAsItIs({{"from", OperationRecord::FileUrl(from)}, {"to", OperationRecord::FileUrl(to)}});
}

// The size that counts is the one before the copy.
void OrganiseManager::copyAsItIs(const OperationRecord& record, const std::string& remark) {
  Verdict verdict = verdictOn(record);
  const auto copied = host_.files->copyItem(verdict.source, verdict.target.value_or(Path()),
                                            [&] { return checkIsAsPlanned(record); });
  if (copied) {
    verdict.outcome = Outcome::copied;
    verdict.error = remark.empty() && record.planned() ? record.planned()->readError : remark;
    noteTarget(verdict);
    settle(verdict);
    log(QStringLiteral("Copy successful"));
  } else if (copyErrorCode(copied.error()) == existingFileCode) {
    const bool isOfTheRun = record.planned() && record.planned()->isNameTaken;
    verdict.outcome = isOfTheRun ? Outcome::nameTaken : Outcome::exists;
    verdict.countedAs = Outcome::nameTaken;
    settle(verdict);
    log(QStringLiteral("Item Exist"));
  } else {
    settleFailure(verdict, copied.error());
    if (copyErrorCode(copied.error()) == fullWhenCopying)
      endForFullVolume(QStringLiteral("There is not enough space at destination"));
  }
}

void OrganiseManager::settleFailure(Verdict verdict, const FileError& error) {
  const bool isUnreadable = error.kind == FileError::Kind::unreadable;
  verdict.outcome = isUnreadable ? Outcome::unreadable : Outcome::failed;
  verdict.error = error.message;
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

FileResult<void> OrganiseManager::checkIsAsPlanned(const OperationRecord& record) const {
  const auto& planned = record.planned();
  if (!planned || !planned->modified) return {};
  const auto now = host_.files->attributesOfItem(record.file("from").value_or(Path()));
  if (!now || (now->size == planned->size && now->modified == *planned->modified)) return {};
  return tl::make_unexpected(FileError{EBUSY, "the file has changed since the run was planned"});
}

// If the plan has no attributes, they are read from the file.
Verdict OrganiseManager::verdictOn(const OperationRecord& record) const {
  Verdict verdict = plannedVerdict(record);
  if (verdict.sourceModified) return verdict;
  if (const auto source = host_.files->attributesOfItem(verdict.source)) {
    verdict.sourceSize = source->size;
    verdict.sourceModified = source->modified;
  }
  return verdict;
}

void OrganiseManager::noteTarget(Verdict& verdict) const {
  const auto target = host_.files->attributesOfItem(verdict.target.value_or(Path()));
  if (!target) return;
  verdict.targetSize = target->size;
  verdict.targetModified = target->modified;
}

void OrganiseManager::endForFullVolume(const QString& logText) {
  log(logText);
  endEarly(RunEnd::outOfSpace);
  processQueue->cancelAllOperations();
  post([this] { buttonStart->setTitle(QStringLiteral("Start")); });
  setStatus(QStringLiteral("Not enough space!"));
  haserror = true;
}

void OrganiseManager::haltForException(const QString& status, const QString& logText) {
  setStatus(status);
  log(logText);
  haltRun();
}

std::uint64_t OrganiseManager::sizeOfFile(const Path& path) const {
  const auto attributes = host_.files->attributesOfItem(path);
  return attributes ? attributes->size : 0;
}

}  // namespace kestrova
