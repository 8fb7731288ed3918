#include "app/organise_manager.h"
#include "execution/frame_fit.h"
#include "imaging/base/image_limits.h"
#include "imaging/photo_rewrite.h"
#include "model/size_text.h"
#include "platform/file_url.h"
#include "platform/log.h"
#include "scan/media_classification.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace kestrova {

namespace {

using imaging::PixelSize;

PictureSize decodedSize(const imaging::ImageSize& size, bool upright) {
  const PixelSize pixels = upright ? size.upright() : size.stored;
  return {static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
}

std::int64_t wholePixels(double side) { return std::max<std::int64_t>(1, std::llround(side)); }

imaging::RewriteRequest requestFor(PictureSize picture, std::int64_t resolution, bool upright) {
  imaging::RewriteRequest request{.size = {}, .upright = upright};
  const auto frame = frameOf(resolution);
  if (!frame) return request;
  const PictureSize fitted = fitIntoFrame(picture, *frame);
  if (fitted != picture) request.size = PixelSize{wholePixels(fitted.width), wholePixels(fitted.height)};
  return request;
}

QString statusText(std::int64_t resolution, std::int64_t number) {
  if (resolution == 0) return QStringLiteral("Rotating photo ") + countText(number);
  if (resolution == 1) return QStringLiteral("Resizing photo %1 for 720P").arg(countText(number));
  if (resolution == 2) return QStringLiteral("Resizing photo %1 for 1080P").arg(countText(number));
  return {};
}

}  // namespace

void OrganiseManager::resizeOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    resizeRecord(record);
  } catch (const std::exception& error) {
    haltForException(QStringLiteral("EXCEPTION resizeOperation : "), error);
  }
}

// A record that ends before its resolution keeps the size.
void OrganiseManager::resizeRecord(const OperationRecord& record) {
  const auto operation = record.operation();
  if (operation && operation->isCancelled()) return;
  const Path from = record.file("from").value_or(Path());
  const Path to = record.file("to").value_or(Path());
  const std::int64_t resolution = record.number("resolution").value_or(0);
  const QString status = statusText(resolution, tRotatedCount + 1);
  if (!status.isEmpty()) setStatus(status);
  prepareFolderOf(to);
  if (isLogging()) log(QStringLiteral("RESIZING PHOTOOOOO! : ") + displayPath(from));
  if (!writeAnew(from, to, resolution)) copyUndecodable(from, to, operation);
}

// Whether the photo could be decoded; what became of it is booked then.
bool OrganiseManager::writeAnew(const Path& from, const Path& to, std::int64_t resolution) {
  const std::uint64_t sourceSize = sizeOfFile(from);
  if (sourceSize > static_cast<std::uint64_t>(imaging::maxWorkingBytes)) return false;
  const auto source = host_.files->readFile(from);
  const auto photo =
      source ? imaging::measurePhoto(*source) : tl::unexpected(imaging::RewriteError{source.error().message});
  const bool upright = chkRotate->state() == CheckBox::on;
  const PictureSize picture = photo ? decodedSize(photo->size, upright) : PictureSize();
  log(QString::asprintf("Width from NSBitmapImageRep: %f", picture.width));
  log(QString::asprintf("Height from NSBitmapImageRep: %f", picture.height));
  if (picture.width <= 0 || picture.height <= 0) return false;

  const auto request = requestFor(picture, resolution, upright);
  const auto rewritten = imaging::rewritePhoto(*source, *photo, request);
  if (!rewritten) return false;
  const bool isSmall = picture.width < smallestPhotoSide || picture.height < smallestPhotoSide;
  if (isSmall && chkFilterSmallPhotos->state() == CheckBox::on) {
    leaveOut(from, sourceSize);
  } else {
    writePhoto({.outcome = request.size ? Verdict::Outcome::resized : Verdict::Outcome::rewritten,
                .source = from,
                .target = to,
                .sourceSize = sourceSize},
               *rewritten);
  }
  return true;
}

// A photo that cannot be written ends the run, whatever the reason: the volume is taken for full.
void OrganiseManager::writePhoto(Verdict verdict, ByteView bytes) {
  const Path& to = *verdict.target;
  const auto written = host_.files->writeDataReplacing(bytes, to);
  if (written) {
    verdict.targetSize = sizeOfFile(to);
    increaseRotateCount(pathExtension(to), *verdict.targetSize);
  } else {
    verdict.outcome = Verdict::Outcome::failed;
    verdict.error = written.error().message;
    endForFullVolume(QStringLiteral("No space left!!!!!"));
  }
  announce(verdict);
}

void OrganiseManager::copyUndecodable(const Path& from, const Path& to,
                                      const std::shared_ptr<InvocationOperation>& operation) {
  log(QStringLiteral("INVALID IMAGE : ") + QString::fromStdString(fileUrlString(from)));
  copyFile(from, to);
  if (operation && operation->isCancelled()) log(QStringLiteral("CANCELLLED"));
  if (processQueue->isSuspended()) {
    log(QStringLiteral("SUSPENDED : ") + QString::number(processQueue->operationCount()));
  }
}

}  // namespace kestrova
