#pragma once

#include "platform/file_manager.h"
#include "platform/mutex.h"

#include <map>
#include <string>

namespace kestrova {

/// Reads for real and writes nothing. What would be written is remembered by name and size, and from then on
/// everything is answered as if it were there; its contents cannot be read. A folder that cannot be written
/// to, a name that is taken and a source that cannot be opened fail as they would; a full volume does not,
/// and neither does a source that fails further in.
class DryRunFiles final : public FileManager {
 public:
  explicit DryRunFiles(std::shared_ptr<FileManager> real) : real_(std::move(real)) {}

  /// What the files that would be there take, in bytes.
  std::uint64_t writtenBytes() const;

  FileResult<FileAttributes> attributesOfItem(const Path& path) const override;
  FileResult<std::unique_ptr<Folder>> openFolder(const Path& path, FinalLink finalLink) const override;
  FileResult<Bytes> readPrefix(const Path& path, std::size_t count) const override {
    return real_->readPrefix(path, count);
  }
  FileStart readStart(const Path& path, std::size_t count) const override;
  FileResult<bool> fileExists(const Path& path) const override;
  using FileManager::readFile;
  FileResult<Bytes> readFile(const Path& path, const SourceCheck& check) const override {
    return real_->readFile(path, check);
  }
  FileResult<void> checkTarget(const Path& folder) const override { return real_->checkTarget(folder); }
  /// Holds nothing: null.
  std::shared_ptr<HeldTarget> holdTarget(const Path&) override { return nullptr; }
  FileResult<void> createDirectory(const Path& folder) override;
  using FileManager::stageCopy;
  FileResult<std::unique_ptr<StagedFile>> stageCopy(const Path& from, const Path& to,
                                                    const SourceCheck& check, StagingTime time) override;
  using FileManager::stageData;
  FileResult<std::unique_ptr<StagedFile>> stageData(ByteView data, const Path& to, StagingTime time) override;

 private:
  class Staged;

  FileResult<void> checkFolderOf(const Path& file) const;
  std::optional<FileAttributes> remembered(const Path& path) const;
  void add(const Path& path, const FileAttributes& attributes);

  const std::shared_ptr<FileManager> real_;
  mutable Mutex mutex_;
  std::map<std::string, FileAttributes> items_ GUARDED_BY(mutex_);  ///< that would be there
};

}  // namespace kestrova
