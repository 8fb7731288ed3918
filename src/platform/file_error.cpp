#include "platform/file_error.h"

#include <system_error>
#include <utility>

namespace kestrova {

FileError systemError(int number) { return {number, std::generic_category().message(number)}; }

tl::unexpected<FileError> failure(int number) { return tl::make_unexpected(systemError(number)); }

FileResult<void> succeeded(int answer) {
  if (answer < 0) return failure();
  return {};
}

FileError withFullVolumeAs(int fullVolumeCode, FileError error) {
  const bool isFull = error.code == ENOSPC || error.code == EDQUOT;
  return {isFull ? fullVolumeCode : error.code, std::move(error.message)};
}

FileError withTakenName(FileError error) {
  return {error.code == EEXIST ? FileError::existingFile : error.code, std::move(error.message)};
}

}  // namespace kestrova
