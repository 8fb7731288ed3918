#include "platform/file_error.h"
#include "platform/file_system.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>

#include <fcntl.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace kestrova::host {

namespace {

constexpr std::uint32_t fuseMagic = 0x65735546;  // "FUse"; in no header

bool isOneOf(std::uint32_t type, std::initializer_list<std::uint32_t> types) {
  return std::ranges::find(types, type) != types.end();
}

/// Before Linux 5.8 syncfs returned 0 even if a file could not be written.
bool volumeBarriersReportErrors() {
  struct utsname system = {};
  int version = 0;
  int release = 0;
  if (::uname(&system) < 0 || std::sscanf(system.release, "%d.%d", &version, &release) != 2) return false;
  return std::pair(version, release) >= std::pair(5, 8);
}

}  // namespace

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

Volume volumeOf(int folder) {
  struct statfs volume = {};
  if (::fstatfs(folder, &volume) < 0) return {};
  const auto type = static_cast<std::uint32_t>(volume.f_type);
  static const bool reportsErrors = volumeBarriersReportErrors();
  return {
      .mayLoseUnnamedFiles = type == BTRFS_SUPER_MAGIC,
      .hasBarrier = reportsErrors && isOneOf(type, {EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC}),
      .isRemote =
          isOneOf(type, {fuseMagic, NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC,
                         V9FS_MAGIC, CEPH_SUPER_MAGIC, AFS_SUPER_MAGIC, CODA_SUPER_MAGIC})};
}

FileResult<void> nameUnnamed(int file, int folder, const char* name) {
  const std::string inProc = "/proc/self/fd/" + std::to_string(file);
  const int answer =
      uninterrupted([&] { return ::linkat(AT_FDCWD, inProc.c_str(), folder, name, AT_SYMLINK_FOLLOW); });
  if (answer == 0 || errno != ENOENT) return succeeded(answer);
  // Without /proc the kernel takes the descriptor itself, if the process is privileged enough.
  return succeeded(uninterrupted([&] { return ::linkat(file, "", folder, name, AT_EMPTY_PATH); }));
}

FileResult<void> renameExclusively(const NameInFolder& from, const NameInFolder& to) {
  return succeeded(uninterrupted(
      [&] { return ::renameat2(from.folder, from.name, to.folder, to.name, RENAME_NOREPLACE); }));
}

FileResult<void> makeDurable(int file) {
  return succeeded(uninterrupted([&] { return ::fdatasync(file); }));
}

FileResult<void> makeVolumeDurable(int folder) {
  return succeeded(uninterrupted([&] { return ::syncfs(folder); }));
}

void beginWriting(int file) { ::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE); }

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
  if (!opened) return tl::make_unexpected(opened.error());
  auto done = succeeded(uninterrupted([&] { return ::fsync(opened->get()); }));
  if (!done && (done.error().code == EINVAL || done.error().code == ENOTSUP)) return {};
  return done;
}

FileTimes timesOf(const struct stat& status) {
  return {.accessAndModification = {status.st_atim, status.st_mtim}, .statusChange = status.st_ctim};
}

FileResult<FileDescriptor> openPlaceWithoutLinks(int folder, const char* path) {
  open_how how = {};
  how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV;
  FileDescriptor place(static_cast<int>(
      uninterrupted([&] { return ::syscall(SYS_openat2, folder, path, &how, sizeof how); })));
  if (!place) return failure();
  return place;
}

}  // namespace kestrova::host
