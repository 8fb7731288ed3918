#include "platform/file_error.h"
#include "platform/file_system.h"

#include <cstdio>
#include <string>

#include <fcntl.h>

namespace kestrova::host {

FileResult<FileDescriptor> openQuietly(int folder, const char* path, int flags) {
  const int reading = O_RDONLY | O_CLOEXEC | flags;
  FileDescriptor file(uninterrupted([&] { return ::openat(folder, path, reading | O_NOATIME); }));
  // Only a file's owner may read it without a trace.
  if (!file && errno == EPERM)
    file = FileDescriptor(uninterrupted([&] { return ::openat(folder, path, reading); }));
  if (!file) return failure();
  return file;
}

FileResult<FileDescriptor> createUnnamed(int folder, mode_t mode) {
  FileDescriptor file(::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode));
  if (!file) return failure();
  return file;
}

FileResult<void> nameUnnamed(int file, int folder, const char* name) {
  const std::string inProc = "/proc/self/fd/" + std::to_string(file);
  const int answer = ::linkat(AT_FDCWD, inProc.c_str(), folder, name, AT_SYMLINK_FOLLOW);
  // Without /proc the kernel takes the descriptor itself, if the process is privileged enough.
  if (answer < 0 && errno == ENOENT) return succeeded(::linkat(file, "", folder, name, AT_EMPTY_PATH));
  return succeeded(answer);
}

FileResult<void> renameExclusively(int folder, const char* from, const char* to) {
  return succeeded(::renameat2(folder, from, folder, to, RENAME_NOREPLACE));
}

FileResult<void> makeDurable(int file) {
  return succeeded(uninterrupted([&] { return ::fdatasync(file); }));
}

FileTimes timesOf(const struct stat& status) { return {{status.st_atim, status.st_mtim}}; }

}  // namespace kestrova::host
