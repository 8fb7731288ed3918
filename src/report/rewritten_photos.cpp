#include "report/rewritten_photos.h"

#include "platform/path_relation.h"
#include "report/run_folder.h"
#include "report/run_info.h"
#include "report/stand_ins.h"
#include "toolkit/image_codec.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;

FileResult<Bytes> readWhole(const Path& path, ReadFrom from) {
  auto reader = FileReader::open(path, from);
  if (!reader) return tl::make_unexpected(reader.error());
  Bytes bytes(static_cast<std::size_t>(reader->size()));
  const auto count = reader->read(bytes);
  if (!count) return tl::make_unexpected(count.error());
  bytes.resize(*count);
  return bytes;
}

bool isRegularFile(const Path& path) {
  std::error_code error;
  return fs::is_regular_file(fs::symlink_status(path, error));
}

}  // namespace

std::optional<std::string> whyNotWhole(const Path& photo, std::string_view sha256, ReadFrom from,
                                       const Stopped& stopped) {
  const auto bytes = readWhole(photo, from);
  if (!bytes) return "the rewritten photo cannot be read: " + bytes.error().message;
  if (isStopped(stopped)) return "was not checked";
  if (!sha256.empty() && sha256Of(*bytes) != sha256)
    return "the rewritten photo is no longer what the run wrote";
  if (decodeImage(*bytes).isNull()) return "the rewritten photo does not decode";
  return std::nullopt;
}

RewrittenPhotos::RewrittenPhotos(Path runs, Path target, std::shared_ptr<const FileManager> files)
    : runs_(std::move(runs)), target_(std::move(target)), files_(std::move(files)) {}

void RewrittenPhotos::readRecords() {
  areRead_ = true;
  const Path target = resolvedPath(target_);
  for (const std::string& id : runIds(runs_)) {
    if (const auto info = readRunInfo(*files_, runs_ / id))
      addRows(rowsFile(runs_ / id), resolvedPath(info->target), target);
  }
}

// What cannot be read proves nothing.
void RewrittenPhotos::addRows(const Path& rows, const Path& targetOfRun, const Path& target) {
  [[maybe_unused]] const auto read = readRows(rows, [&](const Row& row) {
    const auto* file = std::get_if<FileRow>(&row);
    const bool isBound = file != nullptr && file->target && !file->sourceSha256.empty() &&
                         !file->targetSha256.empty() && file->sourceSha256 != file->targetSha256;
    if (!isBound || !isRewritten(*file)) return true;
    Path written = (targetOfRun / *file->target).lexically_normal();
    if (isInside(written, target))
      bySourceSum_.emplace(file->sourceSha256, Written{std::move(written), file->targetSha256});
    return true;
  });
}

bool RewrittenPhotos::hold(const Path& photo, const Stopped& stopped) {
  if (!areRead_) readRecords();
  if (bySourceSum_.empty()) return false;
  const auto sum = sha256Of(photo, ReadFrom::cache, stopped);
  if (!sum) return false;
  const auto [first, last] = bySourceSum_.equal_range(*sum);
  return std::any_of(first, last, [&](const auto& bound) {
    const Written& written = bound.second;
    return isRegularFile(written.target) &&
           !whyNotWhole(written.target, written.sha256, ReadFrom::cache, stopped);
  });
}

}  // namespace kestrova::report
