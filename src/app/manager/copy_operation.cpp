#include "app/organise_manager.h"
#include "execution/error_codes.h"
#include "execution/source_check.h"
#include "model/size_text.h"
#include "platform/log.h"
#include "scan/media_classification.h"

#include <cerrno>
#include <exception>
#include <utility>

namespace kestrova {

namespace {

FileResult<FileAttributes> named(StagedFile& copy) {
  auto attributes = copy.attributes();
  if (!attributes) return attributes;
  if (const auto done = copy.commit(); !done) return tl::make_unexpected(done.error());
  return attributes;
}

// A target that the plan did not find is not looked for again: if it has come since, the copy finds its name
// taken.
FileResult<FileAttributes> copyInTurn(FileManager& files, const OperationRecord& record, const Path& from,
                                      const Path& to) {
  if (!record.planned() || record.planned()->isNameTaken) {
    const auto exists = files.fileExists(to);
    if (!exists) return tl::make_unexpected(exists.error());
    if (*exists) return tl::make_unexpected(FileError{EEXIST, {}});
  }
  const auto copy = files.stageCopy(from, to, checkAgainst(record.planned().value_or(PlannedSource())));
  if (!copy) return tl::make_unexpected(copy.error());
  return named(**copy);
}

}  // namespace

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
  Verdict verdict = verdictOn(record);
  const Path to = verdict.target.value_or(Path());
  announceCopy(extensionOfPath(verdict.source));
  createFolder(to);
  copyAsItIs(record, std::move(verdict));
  if (isLogging()) log(displayPath(to));
}

void OrganiseManager::announceCopy(std::string_view extension) {
  const std::int64_t number = tTotalCount + 1;
  if (isPhoto(extension)) {
    statusLine_.showForFile([number, kind = std::string(extension)] {
      const QString shown = QString::fromStdString(kind).toUpper();
      return QStringLiteral("Copying Photo (%1) %2").arg(shown, countText(number));
    });
  }
  if (isVideo(extension)) {
    statusLine_.showForFile([number] { return QStringLiteral("Copying VIDEO ") + countText(number); });
  }
}

void OrganiseManager::createFolder(const Path& file) {
  auto created = folderMaker_.create(*host_.files, file.parent_path());
  if (!created && makesRoom(created.error())) created = folderMaker_.create(*host_.files, file.parent_path());
  if (!created)
    log(QStringLiteral("Error creating directory path: ") + QString::fromStdString(created.error().message));
}

void OrganiseManager::copyFile(const Path& from, const Path& to) {
  const OperationRecord record{{"from", OperationRecord::FileUrl(from)},
                               {"to", OperationRecord::FileUrl(to)}};
  copyAsItIs(record, verdictOn(record));
}

FileResult<FileAttributes> OrganiseManager::makeCopy(const OperationRecord& record, const Path& from,
                                                     const Path& to) {
  if (auto ahead = takePrepared(record); ahead && ahead->copy) {
    auto copied = named(*ahead->copy);
    if (copied || copied.error().kind == FileError::Kind::alreadyExists) return copied;
  }
  auto copied = copyInTurn(*host_.files, record, from, to);
  if (!copied && makesRoom(copied.error())) copied = copyInTurn(*host_.files, record, from, to);
  return copied;
}

// The size that counts is the one before the copy.
void OrganiseManager::copyAsItIs(const OperationRecord& record, Verdict verdict, const std::string& remark) {
  const auto copied = makeCopy(record, verdict.source, verdict.target.value_or(Path()));
  if (copied) {
    verdict.outcome = Outcome::copied;
    verdict.error = remark.empty() && record.planned() ? record.planned()->readError : remark;
    verdict.targetSize = copied->size;
    verdict.targetModified = copied->modified;
    settle(verdict);
    log(QStringLiteral("Copy successful"));
  } else if (copyErrorCode(copied.error()) == existingFileCode) {
    const bool isOfTheRun = record.planned() && record.planned()->isNameTaken;
    verdict.outcome = isOfTheRun ? Outcome::nameTaken : Outcome::exists;
    verdict.countedAs = Outcome::nameTaken;
    settle(verdict);
    log(QStringLiteral("Item Exist"));
  } else {
    const FileError error = causeOf(copied.error(), verdict.target.value_or(Path()));
    settleFailure(verdict, error);
    endIfTargetIsLost(verdict);
    if (copyErrorCode(error) == fullWhenCopying)
      endForFullVolume(QStringLiteral("There is not enough space at destination"));
  }
}

}  // namespace kestrova
