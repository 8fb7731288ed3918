#include "platform/exclusive_rename.h"

#include "platform/file_error.h"
#include "platform/file_system.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

namespace {

bool isUnknownThere(const FileResult<void>& result) {
  if (result) return false;
  const int code = result.error().code;
  return code == EINVAL || code == ENOSYS || code == ENOTSUP || code == EOPNOTSUPP || code == EPERM;
}

}  // namespace

FileResult<void> renameWithoutReplacing(int folder, const char* from, const char* to) {
  auto renamed = host::renameExclusively(folder, from, to);
  if (isUnknownThere(renamed)) renamed = linkThenUnlink(folder, from, to);
  if (isUnknownThere(renamed)) renamed = renameWhereFree(folder, from, to);
  return renamed;
}

FileResult<void> linkThenUnlink(int folder, const char* from, const char* to) {
  auto linked = succeeded(::linkat(folder, from, folder, to, 0));
  if (linked) ::unlinkat(folder, from, 0);
  return linked;
}

FileResult<void> renameWhereFree(int folder, const char* from, const char* to) {
  struct stat status = {};
  if (::fstatat(folder, to, &status, AT_SYMLINK_NOFOLLOW) == 0) return failure(EEXIST);
  if (errno != ENOENT) return failure();
  return succeeded(::renameat(folder, from, folder, to));
}

}  // namespace kestrova
