#include "app/organise_manager.h"
#include "execution/error_codes.h"
#include "platform/file_url.h"
#include "platform/log.h"
#include "scan/media_classification.h"
#include "toolkit/image.h"
#include "toolkit/image_codec.h"

#include <exception>

namespace kestrova {

namespace {

constexpr float compressionFactor = 0.9F;

/// The photo as it is to be seen, as a JPEG file; nothing when it does not decode.
std::optional<Bytes> asJpeg(const FileResult<Bytes>& file) {
  const auto image = file ? Image::fromData(*file) : nullptr;
  if (!image || image->representations().empty()) return std::nullopt;
  return encodeImage(image->representations().front(), imaging::ImageType::jpeg, {compressionFactor});
}

}  // namespace

void OrganiseManager::rotateOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    rotateRecord(record);
  } catch (const std::exception& error) {
    const auto text = QStringLiteral("EXCEPTION rotateOperation : ") + QString::fromUtf8(error.what());
    setStatus(text);
    log(text);
    processQueue->setSuspended(true);
  }
}

void OrganiseManager::rotateRecord(const OperationRecord& record) {
  const Path from = record.file("from").value_or(Path());
  const Path to = record.file("to").value_or(Path());
  setStatus(QStringLiteral("Rotating photo : ") + displayPath(from));
  prepareFolderOf(to);
  log(QStringLiteral("ROTATING PHOTOOOOO!"));
  const auto jpeg = asJpeg(host_.files->readFile(from));
  const auto written = writeNew(jpeg ? &*jpeg : nullptr, to);
  if (!written && writeErrorCode(written.error()) == fullWhenWriting)
    endForFullVolume(QStringLiteral("No space left!!!!!"));
  if (isLogging()) log(QString::fromStdString(fileUrlString(to)));
}

// A full volume pauses here, where turning a photo ends the run.
void OrganiseManager::writeDataOperation(const OperationRecord& record) {
  const auto written = writeNew(record.data(), record.file("to").value_or(Path()));
  if (!written && writeErrorCode(written.error()) == fullWhenWriting) {
    log(QStringLiteral("No space left!!!!!"));
    processQueue->setSuspended(true);
  }
}

// No bytes are no error: nothing is written, and a photo of 0 bytes is booked.
FileResult<void> OrganiseManager::writeNew(const Bytes* data, const Path& to) {
  FileResult<void> written;
  if (data != nullptr) written = host_.files->writeData(*data, to);
  if (written) increaseRotateCount(pathExtension(to), data == nullptr ? 0 : data->size());
  return written;
}

}  // namespace kestrova
