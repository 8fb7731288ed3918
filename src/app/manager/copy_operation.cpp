#include "app/organise_manager.h"
#include "execution/error_codes.h"
#include "model/size_text.h"
#include "platform/log.h"
#include "scan/media_classification.h"

#include <exception>

namespace kestrova {

namespace {

Outcome outcomeOf(const FileError& error) {
  switch (error.kind) {
    case FileError::Kind::alreadyExists:
      return Outcome::nameTaken;
    case FileError::Kind::unreadable:
      return Outcome::unreadable;
    case FileError::Kind::noSpace:
    case FileError::Kind::notFound:
    case FileError::Kind::other:
      return Outcome::failed;
  }
  return Outcome::failed;
}

}  // namespace

void OrganiseManager::copyOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    copyRecord(record);
  } catch (const std::exception& error) {
    haltForException(QStringLiteral("EXCEPTION rotateOperation : "), error);
  }
}

void OrganiseManager::copyRecord(const OperationRecord& record) {
  const auto operation = record.operation();
  if (operation && operation->isCancelled()) return;
  const Path from = record.file("from").value_or(Path());
  const Path to = record.file("to").value_or(Path());
  const QString extension = pathExtension(from);
  const QString number = countText(tTotalCount + 1);
  if (isPhoto(extension)) setStatus(QStringLiteral("Copying Photo (%1) %2").arg(extension.toUpper(), number));
  if (isVideo(extension)) setStatus(QStringLiteral("Copying VIDEO ") + number);
  prepareFolderOf(to);
  copyFile(from, to);
  if (isLogging()) log(displayPath(to));
}

void OrganiseManager::prepareFolderOf(const Path& file) {
  if (!host_.files->isDirectory(file)) createFolder(file);
}

void OrganiseManager::createFolder(const Path& file) {
  const auto created = host_.files->createDirectory(file.parent_path());
  if (!created)
    log(QStringLiteral("Error creating directory path: ") + QString::fromStdString(created.error().message));
}

void OrganiseManager::copyFile(const Path& from, const Path& to) {
  const std::uint64_t size = sizeOfFile(from);
  const auto copied = host_.files->copyItem(from, to);
  if (copied) {
    increaseTargetCount(pathExtension(to), size);
    log(QStringLiteral("Copy successful"));
    return announce({.outcome = Verdict::Outcome::copied,
                     .source = from,
                     .target = to,
                     .sourceSize = size,
                     .targetSize = size});
  }
  bookFailedCopy(copied.error());
  announce({.outcome = outcomeOf(copied.error()),
            .source = from,
            .target = to,
            .sourceSize = size,
            .error = copied.error().message});
}

void OrganiseManager::bookFailedCopy(const FileError& error) {
  const int code = copyErrorCode(error);
  if (code == existingFileCode) {
    targetExistCount += 1;
    post([this] { lblTargetExistCount->setStringValue(countText(targetExistCount)); });
    log(QStringLiteral("Item Exist"));
  } else if (code == fullWhenCopying) {
    endForFullVolume(QStringLiteral("There is not enough space at destination"));
  }
}

void OrganiseManager::endForFullVolume(const QString& logText) {
  log(logText);
  processQueue->cancelAllOperations();
  post([this] { buttonStart->setTitle(QStringLiteral("Start")); });
  setStatus(QStringLiteral("Not enough space!"));
  haserror = true;
}

void OrganiseManager::haltForException(const QString& logText, const std::exception& error) {
  setStatus(QStringLiteral("Error"));
  log(logText + QString::fromUtf8(error.what()));
  processQueue->setSuspended(true);
}

std::uint64_t OrganiseManager::sizeOfFile(const Path& path) const {
  const auto attributes = host_.files->attributesOfItem(path);
  return attributes ? attributes->size : 0;
}

}  // namespace kestrova
