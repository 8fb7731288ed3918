#include "app/organise_manager.h"
#include "execution/photo_rewriting.h"
#include "imaging/base/image_limits.h"
#include "model/size_text.h"
#include "platform/file_url.h"
#include "platform/log.h"
#include "report/content.h"

#include <exception>
#include <utility>

namespace kestrova {

namespace {

// A record that ends before its resolution keeps the size.
Resolution resolutionOf(const OperationRecord& record) {
  return optionAt<Resolution>(record.number("resolution").value_or(0));
}

tl::expected<Bytes, imaging::RewriteError> readPhoto(const FileManager& files, const Verdict& verdict,
                                                     const SourceCheck& check) {
  if (verdict.sourceSize > std::uint64_t{imaging::maxWorkingBytes})
    return tl::unexpected(imaging::RewriteError{"the file is too large to be decoded"});
  auto photo = files.readFile(verdict.source, check);
  if (!photo) return tl::unexpected(imaging::RewriteError{photo.error().message});
  return std::move(*photo);
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
  if (const auto* row = rowOf(resolutionOf(record)))
    setStatus(QString::fromLatin1(row->status).arg(countText(tRotatedCount + 1)));
  Verdict verdict = verdictOn(record);
  createFolder(verdict.target.value_or(Path()));
  if (isLogging()) log(QStringLiteral("RESIZING PHOTOOOOO! : ") + displayPath(verdict.source));
  rewrite(record, std::move(verdict));
}

void OrganiseManager::rewrite(const OperationRecord& record, Verdict verdict) {
  const auto photo = readPhoto(*host_.files, verdict, checkAgainstPlan(record));
  const RewriteWishes wishes{.resolution = resolutionOf(record),
                             .upright = chkRotate->state() == CheckBox::on,
                             .leavesOutSmall = chkFilterSmallPhotos->state() == CheckBox::on};
  const auto rewriting = photo ? rewritingOf(*photo, wishes) : tl::unexpected(photo.error());
  const PictureSize size = rewriting ? rewriting->size : PictureSize();
  log(QString::asprintf("Width from NSBitmapImageRep: %f", size.width));
  log(QString::asprintf("Height from NSBitmapImageRep: %f", size.height));
  if (!rewriting) {
    copyUndecodable(record, std::move(verdict), rewriting.error().reason);
  } else if (rewriting->isLeftOut) {
    verdict.outcome = Outcome::small;
    verdict.target.reset();
    settle(verdict);
  } else {
    verdict.sourceSha256 = report::sha256Of(*photo);
    writePhoto(std::move(verdict), *rewriting);
  }
}

// If a photo cannot be written, the run ends for any error, as if the volume were full.
void OrganiseManager::writePhoto(Verdict verdict, const Rewriting& rewriting) {
  const Path to = verdict.target.value_or(Path());
  const auto written = replace(to, rewriting.photo.bytes);
  if (!written) {
    settleFailure(verdict, causeOf(written.error(), to));
    endForFullVolume(QStringLiteral("No space left!!!!!"));
    return;
  }
  verdict.outcome = rewriting.isResized ? Outcome::resized : Outcome::rewritten;
  verdict.pagesLeftOut = rewriting.photo.pagesLeftOut;
  verdict.targetSha256 = report::sha256Of(rewriting.photo.bytes);
  verdict.targetSize = written->size;
  verdict.targetModified = written->modified;
  settle(verdict);
}

FileResult<FileAttributes> OrganiseManager::replace(const Path& file, ByteView contents) {
  const auto staged = host_.files->stageData(contents, file);
  if (!staged) return tl::make_unexpected(staged.error());
  auto attributes = (*staged)->attributes();
  if (!attributes) return attributes;
  if (const auto named = (*staged)->commitReplacing(); !named) return tl::make_unexpected(named.error());
  return attributes;
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
