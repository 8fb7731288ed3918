#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/regular_file.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <sys/statvfs.h>
#include <sys/xattr.h>

namespace kestrova::host {

namespace {

constexpr std::size_t bufferSize = std::size_t{256} * 1024;
constexpr std::uint64_t largestPiece = std::uint64_t{32} * 1024 * 1024;

/// Lets the kernel share blocks or move as many bytes as it can; the files' offsets move along. Not every
/// pair of file systems supports this, and some end early without an error: copyInPlainSteps copies the rest.
/// The disk writes a large file while it is still being copied.
std::uint64_t copyInsideKernel(int from, int to, std::uint64_t size) {
  std::uint64_t copied = 0;
  while (copied < size) {
    const std::size_t piece = std::min(size - copied, largestPiece);
    const ssize_t count =
        uninterrupted([&] { return ::copy_file_range(from, nullptr, to, nullptr, piece, 0); });
    if (count <= 0) break;
    copied += static_cast<std::uint64_t>(count);
    if (copied < size) beginWriting(to);
  }
  return copied;
}

/// Copies from the current offsets to the end of the source, which must be `left` bytes away. Some files
/// never end, although they state a size.
FileResult<void> copyInPlainSteps(int from, int to, std::uint64_t left) {
  const auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(bufferSize);
  for (;;) {
    const ssize_t answer = uninterrupted([&] { return ::read(from, buffer.get(), bufferSize); });
    if (answer < 0) return tl::make_unexpected(unreadable(systemError(errno)));
    const auto count = static_cast<std::size_t>(answer);
    if (count > left || (count == 0 && left > 0)) return tl::make_unexpected(changedWhileRead());
    if (count == 0) return {};
    if (auto written = writeBytes(to, {buffer.get(), count}); !written) return written;
    left -= count;
  }
}

// A source that grew is found by its times, see checkUnchanged.
FileResult<void> copyBytes(int from, int to, std::uint64_t size) {
  const std::uint64_t left = size - copyInsideKernel(from, to, size);
  return left == 0 && size > 0 ? FileResult<void>() : copyInPlainSteps(from, to, left);
}

std::vector<char> attributeNames(int file) {
  const ssize_t size = ::flistxattr(file, nullptr, 0);
  if (size <= 0) return {};
  std::vector<char> names(static_cast<std::size_t>(size));
  const ssize_t filled = ::flistxattr(file, names.data(), names.size());
  names.resize(filled < 0 ? 0 : static_cast<std::size_t>(filled));
  return names;
}

/// Some file systems also say ENOSPC where one attribute is larger than they can store; that alone is not a
/// reason to give up a copy.
bool isFull(int file) {
  struct statvfs volume = {};
  return ::fstatvfs(file, &volume) == 0 && volume.f_bavail == 0;
}

FileResult<void> copyAttribute(int from, int to, const char* name) {
  const ssize_t size = ::fgetxattr(from, name, nullptr, 0);
  if (size < 0) return {};
  std::vector<char> value(static_cast<std::size_t>(size));
  const ssize_t filled = ::fgetxattr(from, name, value.data(), value.size());
  if (filled < 0) return {};
  if (::fsetxattr(to, name, value.data(), static_cast<std::size_t>(filled), 0) == 0) return {};
  if (errno == EDQUOT || (errno == ENOSPC && isFull(to))) return failure();
  return {};
}

/// Attributes are copied as far as the target's file system accepts them. Those in "security." are set by the
/// system; the copy gets its own.
FileResult<void> copyAttributes(int from, int to) {
  const std::vector<char> names = attributeNames(from);
  for (std::size_t start = 0; start < names.size();) {
    const std::string_view name(names.data() + start);
    start += name.size() + 1;
    if (name.starts_with("security.")) continue;
    if (auto copied = copyAttribute(from, to, name.data()); !copied) return copied;
  }
  return {};
}

}  // namespace

FileResult<void> copyContents(int from, int to, std::uint64_t size) {
  if (auto copied = copyBytes(from, to, size); !copied) return copied;
  return copyAttributes(from, to);
}

}  // namespace kestrova::host
