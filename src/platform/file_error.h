#pragma once

#include "platform/file_manager.h"

#include <cerrno>

namespace kestrova {

/// The system's own error, with the system's words for it.
FileError systemError(int number);

/// The same, ready to be returned from a function with a FileResult; by default the error of the last system
/// call.
tl::unexpected<FileError> failure(int number = errno);

/// The error of the last system call, which was to create something in the folder. Says so where the volume
/// has room, but for no more files.
tl::unexpected<FileError> failureToCreate(int folder);

/// Nothing, or the error of the last system call if that call returned -1.
FileResult<void> succeeded(int answer);

/// The same, as an error of the file that was to be read.
FileError unreadable(FileError error);

/// A file whose bytes, size or times changed while it was read: what was read may be half old, half new.
FileError changedWhileRead();

/// Repeats a system call as long as signals interrupt it.
template <typename Call>
auto uninterrupted(const Call& call) {
  auto answer = call();
  while (answer < 0 && errno == EINTR) answer = call();
  return answer;
}

}  // namespace kestrova
