#include "platform/create_folders.h"
#include "platform/file_error.h"
#include "platform/file_manager.h"
#include "platform/file_system.h"
#include "platform/folder.h"
#include "platform/item_attributes.h"
#include "platform/long_path.h"
#include "platform/pending_file.h"
#include "platform/regular_file.h"

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

namespace {

constexpr mode_t privateMode = 0600;
constexpr mode_t newFileMode = 0666;
constexpr mode_t permissionBits = 0777;  // what lends rights to whoever runs a file is not copied

/// Fails when the source was written to since it was opened: the copy may then be half old, half new.
FileResult<void> checkUnchanged(const RegularFile& source) {
  struct stat status = {};
  if (::fstat(source.file.get(), &status) < 0) return failure();
  const FileAttributes before = attributesOf(source.status);
  const FileAttributes now = attributesOf(status);
  if (now.size != before.size || now.modified != before.modified) return failure(EBUSY);
  return {};
}

/// What a file system does not know (FAT and network drives have no permissions), no copy on it can carry.
FileResult<void> asFarAsSupported(int answer) {
  if (answer == 0 || errno == EPERM || errno == ENOTSUP || errno == ENOSYS || errno == EINVAL) return {};
  return failure();
}

/// The permissions come last of all that they could forbid.
FileResult<void> copyModeAndTimes(const struct stat& source, int to) {
  return asFarAsSupported(::fchmod(to, source.st_mode & permissionBits)).and_then([&] {
    return asFarAsSupported(::futimens(to, host::timesOf(source).both));
  });
}

FileResult<void> copyWhole(const RegularFile& source, int to) {
  return host::copyContents(source.file.get(), to, static_cast<std::uint64_t>(source.status.st_size))
      .and_then([&] { return checkUnchanged(source); })
      .and_then([&] { return copyModeAndTimes(source.status, to); })
      .and_then([&] { return host::makeDurable(to); });
}

FileResult<void> writeWhole(ByteView data, int to) {
  return writeBytes(to, data).and_then([&] { return host::makeDurable(to); });
}

class SystemFileManager final : public FileManager {
 public:
  explicit SystemFileManager(Staging staging) : staging_(staging) {}

  FileResult<FileAttributes> attributesOfItem(const Path& path) const override {
    const auto address = PathAddress::of(path.native());
    if (!address) return tl::make_unexpected(address.error());
    return attributesAt(address->folder(), address->rest());
  }

  FileResult<std::unique_ptr<Folder>> openFolder(const Path& path, FinalLink finalLink) const override {
    return openSystemFolder(path, finalLink);
  }

  std::optional<Bytes> readPrefix(const Path& path, std::size_t count) const override {
    auto bytes = openRegularFile(path).and_then(
        [&](const RegularFile& source) { return readBytes(source.file.get(), count); });
    if (!bytes) return std::nullopt;
    return std::move(*bytes);
  }

  FileResult<Bytes> readFile(const Path& path) const override {
    return openRegularFile(path).and_then([](const RegularFile& source) {
      auto bytes = readBytes(source.file.get(), static_cast<std::size_t>(source.status.st_size));
      const auto unchanged = checkUnchanged(source);
      return unchanged ? std::move(bytes) : tl::make_unexpected(unchanged.error());
    });
  }

  FileResult<void> createDirectory(const Path& folder) override {
    if (isDirectory(folder)) return {};
    return createFolders(folder);
  }

  FileResult<std::unique_ptr<StagedFile>> stageCopy(const Path& from, const Path& to) override {
    const auto source = openRegularFile(from);
    if (!source) return tl::make_unexpected(unreadable(source.error()));
    return stage(to, privateMode, [&](int file) { return copyWhole(*source, file); });
  }

  FileResult<std::unique_ptr<StagedFile>> stageData(ByteView data, const Path& to) override {
    return stage(to, newFileMode, [&](int file) { return writeWhole(data, file); });
  }

 private:
  template <typename Fill>
  FileResult<std::unique_ptr<StagedFile>> stage(const Path& to, mode_t mode, const Fill& fill) const {
    auto pending = PendingFile::create(to, mode, staging_);
    if (!pending) return tl::make_unexpected(pending.error());
    const FileResult<void> filled = fill((*pending)->descriptor());
    if (!filled) return tl::make_unexpected(filled.error());
    return std::move(*pending);
  }

  Staging staging_;
};

}  // namespace

std::shared_ptr<FileManager> systemFileManager(Staging staging) {
  return std::make_shared<SystemFileManager>(staging);
}

}  // namespace kestrova
