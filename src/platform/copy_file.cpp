#include "platform/copy_file.h"

#include "platform/file_error.h"
#include "platform/file_system.h"

#include <sys/stat.h>

namespace kestrova {

namespace {

constexpr mode_t permissionBits = 0777;  // set-user-ID and the like are not copied

bool isSame(const timespec& a, const timespec& b) { return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec; }

/// What a file system does not support (FAT and network drives have no permissions) cannot be copied to it.
FileResult<void> asFarAsSupported(int answer) {
  if (answer == 0 || errno == EPERM || errno == ENOTSUP || errno == ENOSYS || errno == EINVAL) return {};
  return failure();
}

}  // namespace

FileResult<void> checkUnchanged(const RegularFile& source) {
  struct stat now = {};
  if (::fstat(source.file.get(), &now) < 0) return failure();
  const auto timesBefore = host::timesOf(source.status);
  const auto timesNow = host::timesOf(now);
  const bool isUnchanged = now.st_size == source.status.st_size &&
                           isSame(timesNow.accessAndModification[1], timesBefore.accessAndModification[1]) &&
                           isSame(timesNow.statusChange, timesBefore.statusChange);
  if (!isUnchanged) return tl::make_unexpected(changedWhileRead());
  return {};
}

FileResult<void> copyWhole(const RegularFile& source, int to) {
  const struct stat& status = source.status;
  auto done = host::copyContents(source.file.get(), to, static_cast<std::uint64_t>(status.st_size));
  // The permissions come last, as they could forbid the rest.
  if (done) done = asFarAsSupported(::fchmod(to, status.st_mode & permissionBits));
  if (done) done = asFarAsSupported(::futimens(to, host::timesOf(status).accessAndModification));
  return done;
}

}  // namespace kestrova
