#include "platform/file_reader.h"

#include "platform/file_error.h"
#include "platform/regular_file.h"

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace kestrova {

FileResult<FileReader> FileReader::open(const Path& path, ReadFrom from) {
  auto regular = openRegularFile(path);
  if (!regular) return tl::make_unexpected(regular.error());
#ifdef POSIX_FADV_DONTNEED
  // Drops the pages that are on the disk already.
  if (from == ReadFrom::disk) ::posix_fadvise(regular->file.get(), 0, 0, POSIX_FADV_DONTNEED);
#endif
  const struct stat& status = regular->status;
  return FileReader(std::move(regular->file), static_cast<std::uint64_t>(status.st_size),
                    FileIdentity{status.st_dev, status.st_ino});
}

namespace {

/// Calls `readSome(bytes already there)` until the buffer is full or the file ends.
template <typename ReadSome>
FileResult<std::size_t> fill(std::size_t size, const ReadSome& readSome) {
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t count = uninterrupted([&] { return readSome(filled); });
    if (count < 0) return failure();
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  return filled;
}

}  // namespace

FileResult<std::size_t> FileReader::read(std::span<std::uint8_t> buffer) {
  return fill(buffer.size(), [&](std::size_t filled) {
    return ::read(file_.get(), buffer.data() + filled, buffer.size() - filled);
  });
}

FileResult<std::size_t> FileReader::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const {
  return fill(buffer.size(), [&](std::size_t filled) {
    return ::pread(file_.get(), buffer.data() + filled, buffer.size() - filled,
                   static_cast<off_t>(offset + filled));
  });
}

}  // namespace kestrova
