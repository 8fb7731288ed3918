#include "platform/file_error.h"
#include "platform/file_system.h"

#include <cstdio>
#include <string>

#include <fcntl.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace kestrova::host {

FileResult<FileDescriptor> openQuietly(int folder, const char* path, int flags) {
  const int reading = O_RDONLY | O_CLOEXEC | flags;
  FileDescriptor file(uninterrupted([&] { return ::openat(folder, path, reading | O_NOATIME); }));
  // Only a file's owner may read it without changing its access time.
  if (!file && errno == EPERM)
    file = FileDescriptor(uninterrupted([&] { return ::openat(folder, path, reading); }));
  if (!file) return failure();
  return file;
}

FileResult<FileDescriptor> createUnnamed(int folder, mode_t mode) {
  FileDescriptor file(
      uninterrupted([&] { return ::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode); }));
  if (!file) return failure();
  return file;
}

bool mayLoseUnnamedFiles(int folder) {
  struct statfs volume = {};
  return ::fstatfs(folder, &volume) == 0 && volume.f_type == BTRFS_SUPER_MAGIC;
}

FileResult<void> nameUnnamed(int file, int folder, const char* name) {
  const std::string inProc = "/proc/self/fd/" + std::to_string(file);
  const int answer =
      uninterrupted([&] { return ::linkat(AT_FDCWD, inProc.c_str(), folder, name, AT_SYMLINK_FOLLOW); });
  if (answer == 0 || errno != ENOENT) return succeeded(answer);
  // Without /proc the kernel takes the descriptor itself, if the process is privileged enough.
  return succeeded(uninterrupted([&] { return ::linkat(file, "", folder, name, AT_EMPTY_PATH); }));
}

FileResult<void> renameExclusively(int folder, const char* from, const char* to) {
  return succeeded(uninterrupted([&] { return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE); }));
}

FileResult<void> makeDurable(int file) {
  return succeeded(uninterrupted([&] { return ::fdatasync(file); }));
}

FileResult<void> makeNamesDurable(int folder) {
  const FileDescriptor opened(
      uninterrupted([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!opened && errno == EACCES) {
    ::sync();  // a folder that may be written but not read; this needs no permission
    return {};
  }
  if (!opened) return failure();
  auto done = succeeded(uninterrupted([&] { return ::fsync(opened.get()); }));
  if (!done && (done.error().code == EINVAL || done.error().code == ENOTSUP)) return {};
  return done;
}

FileTimes timesOf(const struct stat& status) {
  return {.accessAndModification = {status.st_atim, status.st_mtim}, .statusChange = status.st_ctim};
}

FileResult<FileDescriptor> openPlaceWithoutLinks(int folder, const char* path) {
  open_how how = {};
  how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
  FileDescriptor place(static_cast<int>(
      uninterrupted([&] { return ::syscall(SYS_openat2, folder, path, &how, sizeof how); })));
  if (!place) return failure();
  return place;
}

}  // namespace kestrova::host
