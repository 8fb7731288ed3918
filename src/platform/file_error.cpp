#include "platform/file_error.h"

#include <system_error>
#include <utility>

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

FileResult<void> succeeded(int answer) {
  if (answer < 0) return failure();
  return {};
}

FileError changedWhileRead() { return {EBUSY, "the file changed while it was read"}; }

FileError unreadable(FileError error) {
  return {error.code, std::move(error.message), FileError::Kind::unreadable};
}

}  // namespace kestrova
