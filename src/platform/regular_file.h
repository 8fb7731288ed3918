#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"

#include <sys/stat.h>

namespace kestrova {

struct RegularFile {
  FileDescriptor file;  ///< open for reading, at its start
  struct stat status = {};
};

/// Opens a regular file, or what a symbolic link to one leads to. Anything else is an error (ENXIO, EISDIR or
/// ENOTSUP) and never blocks.
FileResult<RegularFile> openRegularFile(const Path& path);

/// Fills the buffer from the current offset, or less of it at the file's end; returns how many bytes there
/// are.
FileResult<std::size_t> fillFrom(int file, std::span<std::uint8_t> buffer);
/// The same from the given offset.
FileResult<std::size_t> fillFrom(int file, std::uint64_t offset, std::span<std::uint8_t> buffer);
/// The first `count` bytes of a file just opened, or all of a shorter one, read in a single call.
FileResult<Bytes> readStart(const RegularFile& source, std::size_t count);

/// Up to `count` bytes from the current offset.
FileResult<Bytes> readBytes(int file, std::size_t count);

/// All of them at the current offset.
FileResult<void> writeBytes(int file, ByteView bytes);

}  // namespace kestrova
