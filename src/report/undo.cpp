#include "report/undo.h"

#include "report/last_rows.h"
#include "report/stand_ins.h"
#include "report/timestamps.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;

/// A name below the target and nothing else: a record may have been tampered with.
bool staysBelow(const Path& relative) {
  if (relative.empty() || relative.is_absolute()) return false;
  return std::ranges::none_of(relative, [](const Path& name) { return name == ".."; });
}

/// Nothing, or why the source's bytes are not those that the run read.
std::optional<std::string> whySourceDiffers(const FileRow& row, const Path& target, const Stopped& stopped) {
  if (areSameFile(row.source, target)) return "is the same file as its source";
  if (isRewritten(row)) {
    if (row.sourceSha256.empty()) return "the record has no checksum of its source";
    const auto sum = sha256Of(row.source, ReadFrom::cache, stopped);
    if (!sum) return "its source cannot be read: " + sum.error().message;
    if (*sum != row.sourceSha256) return "its source has changed";
    return std::nullopt;
  }
  const auto same = haveSameContent(row.source, target, ReadFrom::cache, stopped);
  if (!same)
    return (same.error().isFirst ? "its source cannot be read: " : "cannot be read: ") +
           same.error().error.message;
  if (!*same) return "its source has different content";
  return std::nullopt;
}

/// Nothing, or why the target is no longer what the run wrote.
std::optional<std::string> whyTargetDiffers(const FileRow& row, const Path& target,
                                            const FileAttributes& attributes, const Stopped& stopped) {
  if (row.targetSize != attributes.size) return "has a different size than the run wrote";
  if (row.targetModified != nanosecondsText(attributes.modified)) return "was changed after the run";
  if (row.targetSha256.empty()) {
    if (isRewritten(row)) return "the record has no checksum of it";
    return std::nullopt;
  }
  const auto sum = sha256Of(target, ReadFrom::cache, stopped);
  if (!sum) return "cannot be read: " + sum.error().message;
  if (*sum != row.targetSha256) return "has different content than the run wrote";
  return std::nullopt;
}

class Undo {
 public:
  Undo(const UndoRequest& request, const FileManager& files) : request_(request), files_(files) {}

  FileResult<UndoResult> run() {
    if (const auto listed = listTargets(); !listed) return tl::make_unexpected(listed.error());
    std::size_t number = 0;
    const auto read = readRows(request_.rows, [&](const Row& row) {
      if (isStopped()) return false;
      const auto* file = std::get_if<FileRow>(&row);
      if (file != nullptr && isWritten(*file) && lastRows_.isLast(*file->target, number++)) takeBack(*file);
      return true;
    });
    if (!read) return tl::make_unexpected(read.error());
    if (!result_.wasStopped) removeFolders();
    return std::move(result_);
  }

 private:
  bool isStopped() { return report::isStopped(request_.stopped, result_.wasStopped); }

  /// Of several rows with one target, the last one describes it.
  FileResult<void> listTargets() {
    std::size_t number = 0;
    return readRows(request_.rows, [&](const Row& row) {
      const auto* file = std::get_if<FileRow>(&row);
      if (file == nullptr) return true;
      for (const Path& folder : file->createdFolders) folders_.push_back(folder);
      if (!isWritten(*file)) return true;
      if (lastRows_.add(*file->target, number++))
        progress_.total += {1, static_cast<std::int64_t>(file->targetSize.value_or(0))};
      return true;
    });
  }

  void takeBack(const FileRow& row) {
    const Path target = request_.target / *row.target;
    const auto refusal = staysBelow(*row.target) ? takeAway(row, target) : "is outside the target folder";
    if (refusal && !isStopped()) result_.refused.push_back({target, *refusal});
    progress_.done += {1, static_cast<std::int64_t>(row.targetSize.value_or(0))};
    if (request_.progress) request_.progress(progress_);
  }

  /// Nothing if the file was removed, or would be; otherwise why it stays.
  std::optional<std::string> takeAway(const FileRow& row, const Path& target) {
    std::error_code error;
    const auto kind = fs::symlink_status(target, error).type();
    if (kind == fs::file_type::not_found) {
      ++result_.alreadyGone;
      return std::nullopt;
    }
    if (kind != fs::file_type::regular) return "is not a regular file";
    const auto before = files_.attributesOfItem(target);
    if (!before) return "cannot be read: " + before.error().message;
    if (auto difference = whyTargetDiffers(row, target, *before, request_.stopped)) return difference;
    if (auto difference = whySourceDiffers(row, target, request_.stopped)) return difference;
    const auto now = files_.attributesOfItem(target);
    if (!now || now->size != before->size || now->modified != before->modified) return "is being changed";
    if (!request_.isDryRun) {
      if (const auto discarded = request_.discard(target); !discarded) return discarded.error().message;
    }
    ++result_.removed;
    return std::nullopt;
  }

  /// The deepest first; one that holds anything stays.
  void removeFolders() {
    std::ranges::sort(folders_, std::greater(), [](const Path& folder) { return folder.native().size(); });
    for (const Path& folder : folders_) {
      if (!staysBelow(folder) || request_.isDryRun) continue;
      if (::rmdir((request_.target / folder).c_str()) == 0) ++result_.folders;
    }
  }

  const UndoRequest& request_;
  const FileManager& files_;
  LastRows lastRows_;          ///< by their numbers among the rows of written files
  std::vector<Path> folders_;  ///< that the run created, below the target
  WorkProgress progress_;
  UndoResult result_;
};

}  // namespace

FileResult<UndoResult> undoRun(const UndoRequest& request, const FileManager& files) {
  return Undo(request, files).run();
}

}  // namespace kestrova::report
