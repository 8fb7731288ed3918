#include "platform/temporary_name.h"

#include "platform/file_descriptor.h"
#include "platform/file_error.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

constexpr int mostAttempts = 1000;

std::string temporaryName(int number) { return ".kestrova-" + std::to_string(number) + ".part"; }

/// Locks a file of ours for as long as it is open. False if another program mistook it for an abandoned one
/// and was faster. Without locks in the file system, abandoned files stay, which does no harm.
bool keep(int file) {
  if (::flock(file, LOCK_EX | LOCK_NB) < 0) return errno != EWOULDBLOCK;
  struct stat status = {};
  return ::fstat(file, &status) == 0 && status.st_nlink > 0;
}

FileDescriptor openForLocking(int folder, const char* name) {
  const int flags = O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC;
  FileDescriptor file(::openat(folder, name, O_RDWR | flags));
  if (!file && errno == EACCES) file = FileDescriptor(::openat(folder, name, O_RDONLY | flags));
  return file;
}

bool leadsTo(int folder, const char* name, int file) {
  struct stat named = {};
  struct stat open = {};
  return ::fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(file, &open) == 0 &&
         named.st_dev == open.st_dev && named.st_ino == open.st_ino;
}

/// Removes a name whose owner is gone. Never touches the file's bytes: it may also have a final name.
bool removeAbandoned(int folder, const char* name) {
  const FileDescriptor file = openForLocking(folder, name);
  if (!file) return errno == ENOENT;
  if (::flock(file.get(), LOCK_EX | LOCK_NB) < 0) return false;
  // Before we had the lock, its owner may have renamed it, and another program may have taken this name.
  return leadsTo(folder, name, file.get()) && ::unlinkat(folder, name, 0) == 0;
}

}  // namespace

FileResult<std::string> takeTemporaryName(int folder, const PutFile& put, int number) {
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    std::string name = temporaryName(number);
    const auto file = put(name.c_str());
    if (file && keep(*file)) return name;
    if (!file && file.error().code != EEXIST) return tl::make_unexpected(file.error());
    if (!file && !removeAbandoned(folder, name.c_str())) ++number;
  }
  return failure(EBUSY);
}

}  // namespace kestrova
