#include "platform/file_error.h"

#include <system_error>
#include <utility>

#include <sys/statvfs.h>

namespace kestrova {

FileError::Kind FileError::kindOf(int code) {
  switch (code) {
    case EEXIST:
      return Kind::alreadyExists;
    case ENOSPC:
    case EDQUOT:
      return Kind::noSpace;
    case ENOENT:
    case ENOTDIR:
      return Kind::notFound;
    default:
      return Kind::other;
  }
}

FileError systemError(int number) { return {number, std::generic_category().message(number)}; }

tl::unexpected<FileError> failure(int number) { return tl::make_unexpected(systemError(number)); }

tl::unexpected<FileError> failureToCreate(int folder) {
  FileError error = systemError(errno);
  struct statvfs volume = {};
  const bool isOutOfFiles = error.code == ENOSPC && ::fstatvfs(folder, &volume) == 0 && volume.f_files > 0 &&
                            volume.f_favail == 0 && volume.f_bavail > 0;
  if (isOutOfFiles) error.message = "the volume holds as many files as it can";
  return tl::make_unexpected(std::move(error));
}

FileResult<void> succeeded(int answer) {
  if (answer < 0) return failure();
  return {};
}

FileError changedWhileRead() { return {EBUSY, "the file changed while it was read"}; }

FileError unreadable(FileError error) {
  return {error.code, std::move(error.message), FileError::Kind::unreadable};
}

}  // namespace kestrova
