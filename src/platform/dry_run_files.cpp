#include "platform/dry_run_files.h"

#include "platform/file_error.h"
#include "platform/folder.h"

#include <utility>
#include <vector>

namespace kestrova {

/// A file that would be complete.
class DryRunFiles::Staged final : public StagedFile {
 public:
  Staged(DryRunFiles& files, Path to, const FileAttributes& attributes)
      : files_(files), to_(std::move(to)), attributes_(attributes) {}

  FileResult<void> commit() override {
    const auto isTaken = files_.fileExists(to_);
    if (!isTaken) return tl::make_unexpected(isTaken.error());
    return *isTaken ? failure(EEXIST) : commitReplacing();
  }

  FileResult<void> commitReplacing() override {
    files_.add(to_, attributes_);
    return {};
  }

  FileResult<FileAttributes> attributes() const override { return attributes_; }

 private:
  DryRunFiles& files_;
  const Path to_;
  const FileAttributes attributes_;
};

std::uint64_t DryRunFiles::writtenBytes() const {
  const MutexLock lock(mutex_);
  std::uint64_t sum = 0;
  for (const auto& [name, attributes] : items_) sum += attributes.size;
  return sum;
}

FileResult<FileAttributes> DryRunFiles::attributesOfItem(const Path& path) const {
  if (auto known = remembered(path)) return *known;
  return real_->attributesOfItem(path);
}

FileStart DryRunFiles::readStart(const Path& path, std::size_t count) const {
  FileStart start = real_->readStart(path, count);
  if (auto known = remembered(path)) start.attributes = *known;
  return start;
}

FileResult<bool> DryRunFiles::fileExists(const Path& path) const {
  if (remembered(path)) return true;
  return real_->fileExists(path);
}

FileResult<std::unique_ptr<Folder>> DryRunFiles::openFolder(const Path& path, FinalLink finalLink) const {
  return real_->openFolder(path, finalLink);
}

FileResult<void> DryRunFiles::createDirectory(const Path& folder) {
  if (isDirectory(folder)) return {};
  if (auto possible = real_->checkTarget(folder); !possible) return possible;
  for (Path missing = folder; !isDirectory(missing); missing = missing.parent_path()) {
    add(missing, {.modified = currentDate(), .isDirectory = true});
  }
  return {};
}

// Opened and read a little: that shows whether it can be copied.
FileResult<std::unique_ptr<StagedFile>> DryRunFiles::stageCopy(const Path& from, const Path& to,
                                                               const SourceCheck& check, StagingTime) {
  const auto start = real_->readPrefix(from, 1);
  if (!start) return tl::make_unexpected(unreadable(start.error()));
  const auto source = real_->attributesOfItem(from);
  if (!source) return tl::make_unexpected(unreadable(source.error()));
  if (check) {
    if (const auto agreed = check(*source); !agreed) return tl::make_unexpected(agreed.error());
  }
  if (const auto writable = checkFolderOf(to); !writable) return tl::make_unexpected(writable.error());
  return std::make_unique<Staged>(*this, to, *source);
}

FileResult<std::unique_ptr<StagedFile>> DryRunFiles::stageData(ByteView data, const Path& to, StagingTime) {
  if (const auto writable = checkFolderOf(to); !writable) return tl::make_unexpected(writable.error());
  const FileAttributes attributes{.size = data.size(), .modified = currentDate(), .isRegularFile = true};
  return std::make_unique<Staged>(*this, to, attributes);
}

FileResult<void> DryRunFiles::checkFolderOf(const Path& file) const {
  const auto folder = attributesOfItem(file.parent_path());
  if (!folder) return tl::make_unexpected(folder.error());
  if (!folder->isDirectory) return failure(ENOTDIR);
  return real_->checkTarget(file.parent_path());
}

std::optional<FileAttributes> DryRunFiles::remembered(const Path& path) const {
  const MutexLock lock(mutex_);
  const auto found = items_.find(path.native());
  if (found == items_.end()) return std::nullopt;
  return found->second;
}

void DryRunFiles::add(const Path& path, const FileAttributes& attributes) {
  const MutexLock lock(mutex_);
  items_[path.native()] = attributes;
}

}  // namespace kestrova
