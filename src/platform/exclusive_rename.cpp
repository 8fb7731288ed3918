#include "platform/exclusive_rename.h"

#include "platform/file_descriptor.h"
#include "platform/file_error.h"
#include "platform/file_system.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

namespace {

constexpr std::chrono::milliseconds lockInterval(1);
constexpr std::chrono::milliseconds lockPatience(10'000);  // a lock is held for the time of one renaming

bool isUnknownThere(const FileResult<void>& result) {
  if (result) return false;
  const int code = result.error().code;
  return code == EINVAL || code == ENOSYS || code == ENOTSUP || code == EOPNOTSUPP || code == EPERM;
}

/// Waits until no other thread or process holds the folder's lock, and holds it for as long as the descriptor
/// is open. Systems that keep no locks for this folder give a descriptor that protects nothing.
FileResult<FileDescriptor> lockFolder(int folder) {
  FileDescriptor opened(
      uninterrupted([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!opened) return failure();
  for (auto waited = lockPatience.zero(); waited < lockPatience; waited += lockInterval) {
    if (::flock(opened.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return opened;
    std::this_thread::sleep_for(lockInterval);
  }
  return failure(EBUSY);
}

}  // namespace

FileResult<void> renameWithoutReplacing(const NameInFolder& from, const NameInFolder& to) {
  auto renamed = host::renameExclusively(from, to);
  if (isUnknownThere(renamed)) renamed = linkThenUnlink(from, to);
  if (isUnknownThere(renamed)) renamed = renameWhereFree(from, to);
  return renamed;
}

FileResult<void> linkThenUnlink(const NameInFolder& from, const NameInFolder& to) {
  auto linked =
      succeeded(uninterrupted([&] { return ::linkat(from.folder, from.name, to.folder, to.name, 0); }));
  if (linked) ::unlinkat(from.folder, from.name, 0);
  return linked;
}

FileResult<void> renameWhereFree(const NameInFolder& from, const NameInFolder& to) {
  const auto lock = lockFolder(to.folder);
  if (!lock) return tl::make_unexpected(lock.error());
  struct stat status = {};
  if (::fstatat(to.folder, to.name, &status, AT_SYMLINK_NOFOLLOW) == 0) return failure(EEXIST);
  if (errno != ENOENT) return failure();
  return succeeded(uninterrupted([&] { return ::renameat(from.folder, from.name, to.folder, to.name); }));
}

}  // namespace kestrova
