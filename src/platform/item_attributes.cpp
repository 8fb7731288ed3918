#include "platform/item_attributes.h"

#include "platform/file_error.h"
#include "platform/file_system.h"

namespace kestrova {

namespace {

Date dateOf(const timespec& time) { return {time.tv_sec, static_cast<std::int32_t>(time.tv_nsec)}; }

const timespec& modifiedAt(const host::FileTimes& times) { return times.accessAndModification[1]; }

}  // namespace

FileAttributes attributesOf(const struct stat& status) {
  const auto times = host::timesOf(status);
  return {.size = static_cast<std::uint64_t>(status.st_size),
          .modified = dateOf(modifiedAt(times)),
          .statusChanged = dateOf(times.statusChange),
          .identity = {status.st_dev, status.st_ino},
          .isDirectory = S_ISDIR(status.st_mode),
          .isRegularFile = S_ISREG(status.st_mode)};
}

FileResult<FileAttributes> attributesAt(int folder, const char* path) {
  struct stat status = {};
  if (::fstatat(folder, path, &status, 0) < 0) return failure();
  return attributesOf(status);
}

}  // namespace kestrova
