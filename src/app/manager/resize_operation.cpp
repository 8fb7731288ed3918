#include "app/organise_manager.h"
#include "execution/photo_preparation.h"
#include "execution/source_check.h"
#include "model/size_text.h"
#include "platform/file_url.h"
#include "platform/log.h"

#include <exception>
#include <utility>

namespace kestrova {

namespace {

// A record that ends before its resolution keeps the size.
Resolution resolutionOf(const OperationRecord& record) {
  return optionAt<Resolution>(record.number("resolution").value_or(0));
}

}  // namespace

void OrganiseManager::resizeOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    resizeRecord(record);
  } catch (const std::exception& error) {
    settleException(record, error);
    haltForException(QStringLiteral("Error"),
                     QStringLiteral("EXCEPTION resizeOperation : ") + QString::fromUtf8(error.what()));
  }
}

void OrganiseManager::resizeRecord(const OperationRecord& record) {
  const auto operation = record.operation();
  if (operation && operation->isCancelled()) {
    skipOperation(record);
    return;
  }
  if (const auto* row = rowOf(resolutionOf(record))) {
    statusLine_.showForFile([status = row->status, number = tRotatedCount + 1] {
      return QString::fromLatin1(status).arg(countText(number));
    });
  }
  Verdict verdict = verdictOn(record);
  createFolder(verdict.target.value_or(Path()));
  if (isLogging()) log(QStringLiteral("RESIZING PHOTOOOOO! : ") + displayPath(verdict.source));
  rewrite(record, std::move(verdict));
}

void OrganiseManager::rewrite(const OperationRecord& record, Verdict verdict) {
  const auto photo = writePhoto(record, verdict);
  if (!photo && photo.error().isInterrupted) {
    skipOperation(record);
    return;
  }
  const PictureSize size = photo ? photo->photo.rewriting.size : PictureSize();
  log(QString::asprintf("Width from NSBitmapImageRep: %f", size.width));
  log(QString::asprintf("Height from NSBitmapImageRep: %f", size.height));
  if (!photo) {
    copyUndecodable(record, std::move(verdict), photo.error().reason);
  } else if (photo->photo.rewriting.isLeftOut) {
    verdict.outcome = Outcome::small;
    verdict.target.reset();
    settle(verdict);
  } else {
    settlePhoto(std::move(verdict), *photo);
  }
}

PhotoResult OrganiseManager::writePhoto(const OperationRecord& record, const Verdict& verdict) {
  if (auto ahead = takePrepared(record); ahead && ahead->photo) {
    auto written = nameReplacing(*std::move(ahead->photo));
    if (written.file) return written;
  }
  const Path to = verdict.target.value_or(Path());
  const auto operation = record.operation();
  const PhotoTask task{.from = verdict.source,
                       .to = to,
                       .size = verdict.sourceSize,
                       .wishes = wishesFor(resolutionOf(record)),
                       .check = checkAgainst(record.planned().value_or(PlannedSource())),
                       .stopped = [&] { return operation && operation->isCancelled(); }};
  auto photo = preparePhoto(*host_.files, task).map(nameReplacing);
  if (photo && !photo->file && makesRoom(photo->file.error()))
    photo = preparePhoto(*host_.files, task).map(nameReplacing);
  return photo;
}

RewriteWishes OrganiseManager::wishesFor(Resolution resolution) const {
  return {.resolution = resolution,
          .upright = chkRotate->state() == CheckBox::on,
          .leavesOutSmall = chkFilterSmallPhotos->state() == CheckBox::on};
}

// If a photo cannot be written, the run ends for any error, as if the volume were full.
void OrganiseManager::settlePhoto(Verdict verdict, const WrittenPhoto& written) {
  if (!written.file) {
    settleFailure(verdict, causeOf(written.file.error(), verdict.target.value_or(Path())));
    endForFullVolume(QStringLiteral("No space left!!!!!"));
    return;
  }
  const PreparedPhoto& photo = written.photo;
  verdict.outcome = photo.rewriting.isResized ? Outcome::resized : Outcome::rewritten;
  verdict.pagesLeftOut = photo.rewriting.photo.pagesLeftOut;
  verdict.sourceSha256 = photo.sourceSha256;
  verdict.targetSha256 = photo.targetSha256;
  verdict.targetSize = written.file->size;
  verdict.targetModified = written.file->modified;
  settle(verdict);
}

void OrganiseManager::copyUndecodable(const OperationRecord& record, Verdict verdict,
                                      const std::string& reason) {
  log(QStringLiteral("INVALID IMAGE : ") + QString::fromStdString(fileUrlString(verdict.source)));
  copyAsItIs(record, std::move(verdict), reason);
  const auto operation = record.operation();
  if (operation && operation->isCancelled()) log(QStringLiteral("CANCELLLED"));
  if (processQueue->isSuspended()) {
    log(QStringLiteral("SUSPENDED : ") + QString::number(processQueue->operationCount()));
  }
}

}  // namespace kestrova
