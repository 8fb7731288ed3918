#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/folder.h"
#include "platform/item_attributes.h"
#include "platform/long_path.h"

#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

bool isSelfOrParent(std::string_view name) { return name == "." || name == ".."; }

/// Not every file system returns the type with the name.
unsigned char typeOf(int folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type;
  struct stat status = {};
  if (::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) < 0) return DT_UNKNOWN;
  return static_cast<unsigned char>(IFTODT(status.st_mode));
}

EntryKind kindOf(unsigned char type) {
  if (type == DT_DIR) return EntryKind::folder;
  if (type == DT_REG) return EntryKind::file;
  return type == DT_LNK ? EntryKind::link : EntryKind::other;
}

FileResult<std::unique_ptr<Folder>> openIn(int folder, const char* path, FinalLink finalLink);

class SystemFolder final : public Folder {
 public:
  explicit SystemFolder(Directory directory) : directory_(std::move(directory)) {}

  FileResult<void> list(const TakeEntry& take) override {
    for (;;) {
      errno = 0;
      const dirent* const entry = ::readdir(directory_.get());
      if (entry == nullptr) break;
      if (isSelfOrParent(entry->d_name)) continue;
      if (!take(entry->d_name, kindOf(typeOf(number(), *entry)))) return {};
    }
    if (errno != 0) return failure();
    return {};
  }

  FileResult<FileAttributes> attributesOf(const char* name) const override {
    return attributesAt(number(), name);
  }

  FileResult<std::unique_ptr<Folder>> openFolder(const char* name) const override {
    return openIn(number(), name, FinalLink::refused);
  }

 private:
  int number() const { return ::dirfd(directory_.get()); }

  Directory directory_;
};

FileResult<std::unique_ptr<Folder>> openIn(int folder, const char* path, FinalLink finalLink) {
  const int linkFlag = finalLink == FinalLink::refused ? O_NOFOLLOW : 0;
  auto file = host::openQuietly(folder, path, O_DIRECTORY | O_NONBLOCK | linkFlag);
  if (!file) return tl::make_unexpected(file.error());
  Directory directory(::fdopendir(file->get()));
  if (!directory) return failure();
  file->release();
  return std::make_unique<SystemFolder>(std::move(directory));
}

}  // namespace

FileResult<std::unique_ptr<Folder>> openSystemFolder(const Path& path, FinalLink finalLink) {
  const auto address = PathAddress::of(path.native());
  if (!address) return tl::make_unexpected(address.error());
  return openIn(address->folder(), address->rest(), finalLink);
}

}  // namespace kestrova
