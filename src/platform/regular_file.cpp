#include "platform/regular_file.h"

#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/long_path.h"

#include <memory>
#include <new>
#include <utility>

#include <fcntl.h>

namespace kestrova {

namespace {

FileResult<RegularFile> examine(FileDescriptor file) {
  RegularFile regular{.file = std::move(file), .status = {}};
  if (::fstat(regular.file.get(), &regular.status) < 0) return failure();
  if (S_ISDIR(regular.status.st_mode)) return failure(EISDIR);
  if (!S_ISREG(regular.status.st_mode)) return failure(ENOTSUP);
  return regular;
}

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

FileResult<RegularFile> openRegularFile(const Path& path) {
  const auto address = PathAddress::of(path.native());
  if (!address) return tl::make_unexpected(address.error());
  // Without O_NONBLOCK a FIFO would block until it has a writer.
  auto file = host::openQuietly(address->folder(), address->rest(), O_NONBLOCK | O_NOCTTY);
  if (!file) return tl::make_unexpected(file.error());
  return examine(std::move(*file));
}

FileResult<std::size_t> fillFrom(int file, std::span<std::uint8_t> buffer) {
  return fill(buffer.size(), [&](std::size_t filled) {
    return ::read(file, buffer.data() + filled, buffer.size() - filled);
  });
}

FileResult<std::size_t> fillFrom(int file, std::uint64_t offset, std::span<std::uint8_t> buffer) {
  return fill(buffer.size(), [&](std::size_t filled) {
    return ::pread(file, buffer.data() + filled, buffer.size() - filled, static_cast<off_t>(offset + filled));
  });
}

FileResult<Bytes> readStart(const RegularFile& source, std::size_t count) {
  const auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(count);
  const auto size = static_cast<std::size_t>(source.status.st_size);
  std::size_t filled = 0;
  // Pseudo-files have more bytes than their size of 0 says.
  while (filled < count && (filled == 0 || filled != size)) {
    const ssize_t read =
        uninterrupted([&] { return ::read(source.file.get(), buffer.get() + filled, count - filled); });
    if (read < 0) return failure();
    if (read == 0) break;
    filled += static_cast<std::size_t>(read);
  }
  return Bytes(buffer.get(), buffer.get() + filled);
}

FileResult<Bytes> readBytes(int file, std::size_t count) try {
  Bytes bytes(count);
  const auto filled = fillFrom(file, bytes);
  if (!filled) return tl::make_unexpected(filled.error());
  bytes.resize(*filled);
  return bytes;
} catch (const std::exception&) {  // does not fit into memory
  return failure(ENOMEM);
}

FileResult<void> writeBytes(int file, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t written = uninterrupted([&] { return ::write(file, bytes.data(), bytes.size()); });
    if (written < 0) return failure();
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return {};
}

}  // namespace kestrova
