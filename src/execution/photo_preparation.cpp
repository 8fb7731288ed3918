#include "execution/photo_preparation.h"

#include "imaging/base/image_limits.h"
#include "platform/sha256.h"

#include <utility>

namespace kestrova {

namespace {

tl::expected<Bytes, imaging::RewriteError> readPhoto(const FileManager& files, const PhotoTask& task) {
  if (task.size > std::uint64_t{imaging::maxWorkingBytes})
    return tl::unexpected(imaging::RewriteError{"the file is too large to be decoded"});
  auto photo = files.readFile(task.from, task.check);
  if (!photo) return tl::unexpected(imaging::RewriteError{photo.error().message});
  return std::move(*photo);
}

FileResult<FileAttributes> named(StagedFile& file) {
  auto attributes = file.attributes();
  if (!attributes) return attributes;
  if (const auto done = file.commitReplacing(); !done) return tl::make_unexpected(done.error());
  return attributes;
}

}  // namespace

tl::expected<PreparedPhoto, imaging::RewriteError> preparePhoto(FileManager& files, const PhotoTask& task) {
  const auto photo = readPhoto(files, task);
  if (!photo) return tl::unexpected(photo.error());
  auto rewriting = rewritingOf(*photo, task.wishes, task.stopped);
  if (!rewriting) return tl::unexpected(rewriting.error());
  if (rewriting->isLeftOut) return PreparedPhoto{.rewriting = std::move(*rewriting)};

  std::string sourceSha256 = sha256Of(*photo);
  if (task.stopped && task.stopped())
    return tl::unexpected(imaging::RewriteError{.reason = "interrupted", .isInterrupted = true});
  const Bytes written = std::exchange(rewriting->photo.bytes, {});
  return PreparedPhoto{.rewriting = std::move(*rewriting),
                       .sourceSha256 = std::move(sourceSha256),
                       .targetSha256 = sha256Of(written),
                       .file = files.stageData(written, task.to, task.time)};
}

WrittenPhoto nameReplacing(PreparedPhoto photo) {
  if (photo.rewriting.isLeftOut) return {.photo = std::move(photo), .file = FileAttributes()};
  auto file = photo.file ? named(**photo.file) : tl::make_unexpected(photo.file.error());
  return {.photo = std::move(photo), .file = std::move(file)};
}

}  // namespace kestrova
