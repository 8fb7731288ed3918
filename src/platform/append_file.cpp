#include "platform/append_file.h"

#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/long_path.h"
#include "platform/regular_file.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>

namespace kestrova {

FileResult<AppendFile> AppendFile::create(const Path& path) {
  const auto address = PathAddress::of(path.native());
  if (!address) return tl::make_unexpected(address.error());
  FileDescriptor file(uninterrupted([&] {
    return ::openat(address->folder(), address->rest(), O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC,
                    0600);
  }));
  if (!file) return failure();
  ::flock(file.get(), LOCK_EX | LOCK_NB);  // if the file system has no locks, others cannot tell
  return AppendFile(std::move(file));
}

FileResult<void> AppendFile::append(std::string_view bytes) {
  return writeBytes(file_.get(), {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

FileResult<void> replaceDurably(const Path& finished, const Path& replaced) {
  const auto file = openRegularFile(finished);
  if (!file) return tl::make_unexpected(file.error());
  if (auto durable = host::makeDurable(file->file.get()); !durable) return durable;
  return succeeded(uninterrupted([&] { return ::rename(finished.c_str(), replaced.c_str()); }));
}

bool isBeingWritten(const Path& path) {
  const auto file = openRegularFile(path);
  return file && ::flock(file->file.get(), LOCK_SH | LOCK_NB) < 0 && errno == EWOULDBLOCK;
}

}  // namespace kestrova
