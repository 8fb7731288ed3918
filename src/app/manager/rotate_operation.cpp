#include "app/organise_manager.h"
#include "execution/error_codes.h"
#include "platform/file_url.h"
#include "platform/log.h"
#include "platform/sha256.h"
#include "scan/media_classification.h"
#include "toolkit/image_codec.h"

#include <exception>

namespace kestrova {

namespace {

constexpr float compressionFactor = 0.9F;

/// The first page of the photo, turned upright, as a JPEG file; nothing if it does not decode.
std::optional<Bytes> asJpeg(const FileResult<Bytes>& file) {
  if (!file) return std::nullopt;
  return encodeImage(turnedUpright(decodeImage(*file), *file), imaging::ImageType::jpeg, {compressionFactor});
}

}  // namespace

void OrganiseManager::rotateOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    rotateRecord(record);
  } catch (const std::exception& error) {
    settleException(record, error);
    const auto text = QStringLiteral("EXCEPTION rotateOperation : ") + QString::fromUtf8(error.what());
    haltForException(text, text);
  }
}

void OrganiseManager::rotateRecord(const OperationRecord& record) {
  Verdict verdict = verdictOn(record);
  const Path to = verdict.target.value_or(Path());
  setStatus(QStringLiteral("Rotating photo : ") + displayPath(verdict.source));
  createFolder(to);
  log(QStringLiteral("ROTATING PHOTOOOOO!"));
  const auto photo = host_.files->readFile(verdict.source);
  const auto jpeg = asJpeg(photo);
  if (!jpeg) {
    // Counted with the rewritten photos, though nothing is written.
    verdict.countedAs = Outcome::rewritten;
    settleFailure(verdict, {0, "the photo does not decode"});
  } else if (const auto written = host_.files->writeData(*jpeg, to)) {
    verdict.outcome = Outcome::rewritten;
    verdict.targetSize = jpeg->size();
    verdict.sourceSha256 = sha256Of(*photo);
    verdict.targetSha256 = sha256Of(*jpeg);
    settle(verdict);
  } else {
    settleFailure(verdict, written.error());
    if (writeErrorCode(written.error()) == fullWhenWriting)
      endForFullVolume(QStringLiteral("No space left!!!!!"));
  }
  if (isLogging()) log(QString::fromStdString(fileUrlString(to)));
}

// A full volume pauses the run here, while it ends it when a photo is rotated. It is not an error if there
// are no bytes: nothing is written, and a photo of 0 bytes is counted.
void OrganiseManager::writeDataOperation(const OperationRecord& record) {
  const Path to = record.file("to").value_or(Path());
  const Bytes* data = record.data();
  const auto written = data == nullptr ? FileResult<void>() : host_.files->writeData(*data, to);
  if (written) {
    increaseRotateCount(extensionOfPath(to), data == nullptr ? 0 : data->size());
  } else if (writeErrorCode(written.error()) == fullWhenWriting) {
    log(QStringLiteral("No space left!!!!!"));
    pauseRun();
  }
}

}  // namespace kestrova
