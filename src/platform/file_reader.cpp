#include "platform/file_reader.h"

#include "platform/regular_file.h"

#include <utility>

#include <fcntl.h>

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

FileResult<std::size_t> FileReader::read(std::span<std::uint8_t> buffer) {
  return fillFrom(file_.get(), buffer);
}

FileResult<std::size_t> FileReader::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const {
  return fillFrom(file_.get(), offset, buffer);
}

}  // namespace kestrova
