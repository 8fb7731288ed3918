#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"

#include <sys/stat.h>

namespace kestrova::host {

// What the host systems do differently: one source file for each of them.

/// Opens for reading, without leaving a new access time where the system allows that.
FileResult<FileDescriptor> openQuietly(int folder, const char* path, int flags);

/// A file without a name, which vanishes when it is closed, or an error where the file system has no such
/// thing.
FileResult<FileDescriptor> createUnnamed(int folder, mode_t mode);

/// Gives such a file its first name. Fails with EEXIST when the name is taken.
FileResult<void> nameUnnamed(int file, int folder, const char* name);

/// Renames in one step, or fails with EEXIST when the new name is taken. Where the file system cannot: EINVAL
/// or ENOTSUP or ENOSYS.
FileResult<void> renameExclusively(int folder, const char* from, const char* to);

/// Copies all bytes and the extended attributes between two files at their starts. A source whose bytes do
/// not add up to `size` is changing under our hands: EBUSY.
FileResult<void> copyContents(int from, int to, std::uint64_t size);

/// Returns once the file's bytes, and what is needed to find them, are safe on the medium. A name given to
/// the file afterwards cannot outlive a crash without them.
FileResult<void> makeDurable(int file);

/// Times of access and of modification, as futimens takes them.
struct FileTimes {
  timespec both[2];
};
FileTimes timesOf(const struct stat& status);

}  // namespace kestrova::host
