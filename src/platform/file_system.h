#pragma once

#include "platform/exclusive_rename.h"
#include "platform/file_descriptor.h"
#include "platform/file_manager.h"

#include <sys/stat.h>

namespace kestrova::host {

// What the host systems do differently; each has its own source file.

/// Opens for reading and keeps the access time where the system allows that.
FileResult<FileDescriptor> openQuietly(int folder, const char* path, int flags);

/// A file without a name, which disappears when it is closed; an error if the file system does not support
/// this.
FileResult<FileDescriptor> createUnnamed(int folder, mode_t mode);

/// What is known about the volume of a folder, which is given as an open place.
struct Volume {
  /// A file that was made durable before it had a name may be lost, or damage the volume: on btrfs some
  /// kernels replay a log that has the file without a name.
  bool mayLoseUnnamedFiles = false;
  /// `makeVolumeDurable` can be relied on.
  bool hasBarrier = false;
  /// Every call may wait for another program or machine.
  bool isRemote = false;
};
Volume volumeOf(int folder);

/// Gives such a file its first name. Fails with EEXIST when the name is taken.
FileResult<void> nameUnnamed(int file, int folder, const char* name);

/// Renames in one step, or fails with EEXIST when the new name is taken. If the file system cannot do that:
/// EINVAL, ENOTSUP or ENOSYS.
FileResult<void> renameExclusively(const NameInFolder& from, const NameInFolder& to);

/// Copies all bytes and the extended attributes between two files at their starts. A source that ends before
/// `size` bytes is an error (EBUSY), and no more than these are written.
FileResult<void> copyContents(int from, int to, std::uint64_t size);

/// Returns once the file's bytes, and what is needed to find them, are on the medium. If the file then gets a
/// name and that name survives a crash, so do the bytes.
FileResult<void> makeDurable(int file);

/// The same for the names in a folder, given as an open place. Does nothing where the file system knows
/// nothing of the kind.
FileResult<void> makeNamesDurable(int folder);

/// The same for all files and names of the volume that the folder, open for reading, is on. Fails if anything
/// could not be written there since the folder was opened.
FileResult<void> makeVolumeDurable(int folder);

/// A hint: the file will be made durable soon, so the disk may begin to write it.
void beginWriting(int file);

/// Opens a folder, given as an open place, for reading.
FileResult<FileDescriptor> openFolder(int place);

struct FileTimes {
  timespec accessAndModification[2];  ///< as futimens takes them
  timespec statusChange;              ///< of the bytes or of anything else; programs cannot set it
};
FileTimes timesOf(const struct stat& status);

/// Opens a folder below another one, on the same volume, to start paths from, in one call. Fails if there is
/// a symbolic link or another volume on the way, and if the system has no such call.
FileResult<FileDescriptor> openPlaceWithoutLinks(int folder, const char* path);

}  // namespace kestrova::host
