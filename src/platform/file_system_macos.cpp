#include "platform/file_error.h"
#include "platform/file_system.h"

#include <copyfile.h>
#include <fcntl.h>
#include <stdio.h>

namespace kestrova::host {

FileResult<FileDescriptor> openQuietly(int folder, const char* path, int flags) {
  FileDescriptor file(uninterrupted([&] { return ::openat(folder, path, O_RDONLY | O_CLOEXEC | flags); }));
  if (!file) return failure();
  return file;
}

FileResult<FileDescriptor> createUnnamed(int, mode_t) { return failure(ENOTSUP); }

Volume volumeOf(int) { return {}; }

FileResult<void> nameUnnamed(int, int, const char*) { return failure(ENOTSUP); }

FileResult<void> renameExclusively(const NameInFolder& from, const NameInFolder& to) {
  return succeeded(
      uninterrupted([&] { return ::renameatx_np(from.folder, from.name, to.folder, to.name, RENAME_EXCL); }));
}

FileResult<void> copyContents(int from, int to, std::uint64_t size) {
  const auto copied =
      succeeded(::fcopyfile(from, to, nullptr, COPYFILE_DATA | COPYFILE_XATTR | COPYFILE_ACL));
  if (!copied) return copied;
  struct stat status = {};
  if (::fstat(to, &status) < 0) return failure();
  if (static_cast<std::uint64_t>(status.st_size) != size) return tl::make_unexpected(changedWhileRead());
  return {};
}

FileResult<void> makeDurable(int file) {
  // fsync alone leaves the bytes in the drive's own cache.
  if (::fcntl(file, F_FULLFSYNC) == 0) return {};
  return succeeded(uninterrupted([&] { return ::fsync(file); }));
}

FileResult<void> makeVolumeDurable(int) { return failure(ENOTSUP); }

void beginWriting(int) {}

FileResult<FileDescriptor> openFolder(int place) {
  FileDescriptor folder(
      uninterrupted([&] { return ::openat(place, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!folder) return failure();
  return folder;
}

FileResult<void> makeNamesDurable(int folder) {
  const auto opened = openFolder(folder);
  if (!opened && opened.error().code == EACCES) {
    ::sync();  // a folder that may be written but not read; this needs no permission
    return {};
  }
  return opened ? makeDurable(opened->get()) : tl::make_unexpected(opened.error());
}

FileTimes timesOf(const struct stat& status) {
  return {.accessAndModification = {status.st_atimespec, status.st_mtimespec},
          .statusChange = status.st_ctimespec};
}

FileResult<FileDescriptor> openPlaceWithoutLinks(int, const char*) { return failure(ENOTSUP); }

}  // namespace kestrova::host
