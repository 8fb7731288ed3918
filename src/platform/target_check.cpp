#include "platform/target_check.h"

#include "platform/file_error.h"
#include "platform/item_attributes.h"
#include "platform/long_path.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

namespace {

bool isDanglingLink(const PathAddress& address) {
  struct stat status = {};
  return ::fstatat(address.folder(), address.rest(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

Path folderAbove(const Path& path) {
  const Path above = (path.has_filename() ? path : path.parent_path()).parent_path();
  return above.empty() ? Path(".") : above;
}

}  // namespace

FileResult<void> checkCanWriteBelow(const Path& folder) {
  const auto address = PathAddress::of(folder.native());
  if (!address) return tl::make_unexpected(address.error());
  const auto attributes = attributesAt(address->folder(), address->rest());
  if (!attributes) {
    if (attributes.error().code != ENOENT || isDanglingLink(*address) || folder == ".")
      return tl::make_unexpected(attributes.error());
    return checkCanWriteBelow(folderAbove(folder));
  }
  if (!attributes->isDirectory) return failure(ENOTDIR);
  return succeeded(::faccessat(address->folder(), address->rest(), W_OK | X_OK, AT_EACCESS));
}

}  // namespace kestrova
