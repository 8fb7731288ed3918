#pragma once

#include "platform/bytes.h"
#include "platform/file_descriptor.h"
#include "platform/file_manager.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrova {

/// Where a file's bytes are read from.
enum class ReadFrom {
  cache,  ///< from the system's cache, if it still has them
  disk,   ///< from the disk itself, as far as the system allows; what was written must already be durable
};

/// Reads a regular file in pieces. Never blocks on a FIFO or a device.
class FileReader {
 public:
  static FileResult<FileReader> open(const Path& path, ReadFrom from = ReadFrom::cache);

  /// Fills the buffer with what comes next, or less of it at the file's end. Returns how many bytes there
  /// are; 0 at the end.
  FileResult<std::size_t> read(std::span<std::uint8_t> buffer);

  /// The same from an offset; the current position does not matter.
  FileResult<std::size_t> readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const;

  /// The file's size in bytes when it was opened.
  std::uint64_t size() const { return size_; }
  const FileIdentity& identity() const { return identity_; }

 private:
  FileReader(FileDescriptor file, std::uint64_t size, FileIdentity identity)
      : file_(std::move(file)), size_(size), identity_(identity) {}

  FileDescriptor file_;
  std::uint64_t size_;
  FileIdentity identity_;
};

}  // namespace kestrova
