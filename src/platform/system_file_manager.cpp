#include "platform/copy_file.h"
#include "platform/create_folders.h"
#include "platform/file_error.h"
#include "platform/file_manager.h"
#include "platform/file_system.h"
#include "platform/folder.h"
#include "platform/guarded_value.h"
#include "platform/item_attributes.h"
#include "platform/long_path.h"
#include "platform/pending_file.h"
#include "platform/regular_file.h"
#include "platform/target_check.h"
#include "platform/target_tree.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace kestrova {

namespace {

constexpr mode_t privateMode = 0600;
constexpr mode_t newFileMode = 0666;

FileResult<void> asked(const SourceCheck& check, const RegularFile& source) {
  return check ? check(attributesOf(source.status)) : FileResult<void>();
}

class SystemFileManager final : public FileManager {
 public:
  using FileManager::readFile;
  using FileManager::stageCopy;
  using FileManager::stageData;

  explicit SystemFileManager(StagingChoice staging) : staging_(std::move(staging)) {}

  FileResult<FileAttributes> attributesOfItem(const Path& path) const override {
    return withPlaceOf(path, attributesAt);
  }

  FileResult<std::unique_ptr<Folder>> openFolder(const Path& path, FinalLink finalLink) const override {
    return openSystemFolder(path, finalLink);
  }

  FileResult<Bytes> readPrefix(const Path& path, std::size_t count) const override {
    const auto source = openRegularFile(path);
    if (!source) return tl::make_unexpected(source.error());
    return kestrova::readStart(*source, count);
  }

  FileStart readStart(const Path& path, std::size_t count) const override {
    const auto source = openRegularFile(path);
    if (!source) return {attributesOfItem(path), tl::make_unexpected(source.error())};
    return {attributesOf(source->status), kestrova::readStart(*source, count)};
  }

  FileResult<bool> fileExists(const Path& path) const override {
    const auto found = withPlaceOf(path, [](int folder, const char* name) {
      return ::faccessat(folder, name, F_OK, AT_EACCESS) == 0 ? FileResult<void>() : failure();
    });
    if (found) return true;
    if (found.error().kind == FileError::Kind::notFound) return false;
    return tl::make_unexpected(found.error());
  }

  FileResult<Bytes> readFile(const Path& path, const SourceCheck& check) const override {
    const auto source = openRegularFile(path);
    if (!source) return tl::make_unexpected(source.error());
    if (const auto agreed = asked(check, *source); !agreed) return tl::make_unexpected(agreed.error());
    auto bytes = readBytes(source->file.get(), static_cast<std::size_t>(source->status.st_size));
    if (!bytes) return bytes;
    if (const auto unchanged = checkUnchanged(*source); !unchanged)
      return tl::make_unexpected(unchanged.error());
    return bytes;
  }

  FileResult<void> checkTarget(const Path& folder) const override { return checkCanWriteBelow(folder); }

  std::shared_ptr<HeldTarget> holdTarget(const Path& folder) override {
    auto tree = std::make_shared<TargetTree>(folder);
    target_ = tree;
    return tree;
  }

  FileResult<void> createDirectory(const Path& folder) override {
    if (const auto tree = treeOf(folder)) {
      const auto created = tree->create(folder);
      if (!created) return tl::make_unexpected(created.error());
      return {};
    }
    if (isDirectory(folder)) return {};
    return createFolders(folder);
  }

  FileResult<std::unique_ptr<StagedFile>> stageCopy(const Path& from, const Path& to,
                                                    const SourceCheck& check, StagingTime time) override {
    const auto source = openRegularFile(from);
    if (!source) return tl::make_unexpected(unreadable(source.error()));
    if (const auto agreed = asked(check, *source); !agreed) return tl::make_unexpected(agreed.error());
    const auto size = static_cast<std::uint64_t>(source->status.st_size);
    return stage({to, privateMode, size, time}, [&](int file) {
      auto copied = copyWhole(*source, file);
      return copied && time == StagingTime::inTurn ? checkUnchanged(*source) : copied;
    });
  }

  FileResult<std::unique_ptr<StagedFile>> stageData(ByteView data, const Path& to,
                                                    StagingTime time) override {
    return stage({to, newFileMode, data.size(), time}, [&](int file) { return writeBytes(file, data); });
  }

 private:
  /// Calls `look(folder, rest)` with the path as an open folder and the rest from there.
  template <typename Look>
  auto withPlaceOf(const Path& path, const Look& look) const -> decltype(look(0, "")) {
    if (const auto tree = treeOf(path); tree && path.has_filename() && tree->holds(path.parent_path())) {
      const auto folder = tree->enter(path.parent_path());
      if (!folder) return tl::make_unexpected(folder.error());
      return look(folder->get(), path.filename().c_str());
    }
    const auto address = PathAddress::of(path.native());
    if (!address) return tl::make_unexpected(address.error());
    return look(address->folder(), address->rest());
  }

  /// The held target, if this path is in it.
  std::shared_ptr<TargetTree> treeOf(const Path& path) const {
    auto tree = target_.get().lock();
    return tree && tree->holds(path) ? tree : nullptr;
  }

  struct NewFile {
    const Path& to;
    mode_t mode;
    std::uint64_t size;
    StagingTime time;
  };

  /// Opens the folder of a file that is to get its name there.
  FileResult<FileDescriptor> openFolderOf(const Path& file) const {
    const Path folder = file.parent_path();
    const auto tree = treeOf(folder);
    if (!tree) return openPlace(folder);
    tree->noteNewName(folder);
    return tree->enter(folder);
  }

  FileResult<PendingFile::Place> placeFor(const NewFile& file) const {
    if (file.time == StagingTime::ahead) return placeAheadFor(file.to.parent_path());
    auto folder = openFolderOf(file.to);
    if (!folder) return tl::make_unexpected(folder.error());
    const Staging staging = staging_(folder->get());
    return PendingFile::Place{.folder = std::make_shared<FileDescriptor>(std::move(*folder)),
                              .staging = staging};
  }

  FileResult<PendingFile::Place> placeAheadFor(const Path& folder) const {
    const auto tree = treeOf(folder);
    if (!tree) return failure(ENOTSUP);
    auto nearest = tree->enterNearest(folder);
    if (!nearest) return tl::make_unexpected(nearest.error());
    const auto enter = [tree, folder] {
      tree->noteNewName(folder);
      return tree->enter(folder);
    };
    return PendingFile::Place{.folder = std::move(*nearest),
                              .staging = tree->staging(staging_),
                              .temporaryNumber = tree->nextTemporaryNumber(),
                              .enterFinalFolder = enter,
                              .barrier = tree->barrier()};
  }

  template <typename Fill>
  FileResult<std::unique_ptr<StagedFile>> stage(const NewFile& file, const Fill& fill) const {
    auto place = placeFor(file);
    if (!place) return tl::make_unexpected(place.error());
    auto pending = PendingFile::create(std::move(*place), file.to.filename().native(), file.mode);
    if (!pending) return tl::make_unexpected(pending.error());
    auto done = fill((*pending)->descriptor());
    if (done) done = (*pending)->complete(file.size, file.time);
    if (!done) return tl::make_unexpected(done.error());
    return std::move(*pending);
  }

  const StagingChoice staging_;
  GuardedValue<std::weak_ptr<TargetTree>> target_;
};

}  // namespace

Staging stagingFor(int folder) {
  return host::volumeOf(folder).mayLoseUnnamedFiles ? Staging::underTemporaryName : Staging::unseen;
}

std::shared_ptr<FileManager> systemFileManager(StagingChoice staging) {
  return std::make_shared<SystemFileManager>(std::move(staging));
}

std::shared_ptr<FileManager> systemFileManager(Staging staging) {
  return systemFileManager([staging](int) { return staging; });
}

}  // namespace kestrova
