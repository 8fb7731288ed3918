#include "platform/create_folders.h"

#include "platform/file_error.h"
#include "platform/long_path.h"

#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

FileResult<FileDescriptor> enterOrCreate(int folder, const std::string& name) {
  auto entered = openPlace(folder, name.c_str());
  if (entered || entered.error().code != ENOENT) return entered;
  if (::mkdirat(folder, name.c_str(), 0777) < 0 && errno != EEXIST) return failure();
  return openPlace(folder, name.c_str());
}

/// Cuts the first name off a path; empty at its end.
std::string_view takeFirstName(std::string_view& path) {
  path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
  const std::string_view name = path.substr(0, path.find('/'));
  path.remove_prefix(name.size());
  return name;
}

}  // namespace

FileResult<void> createFolders(const Path& path) {
  std::string_view rest = path.native();
  auto folder = openPlace(AT_FDCWD, rest.starts_with('/') ? "/" : ".");
  for (auto name = takeFirstName(rest); folder && !name.empty(); name = takeFirstName(rest)) {
    folder = enterOrCreate(folder->get(), std::string(name));
  }
  return folder.map([](const FileDescriptor&) {});
}

}  // namespace kestrova
