#include "platform/create_folders.h"

#include "platform/file_error.h"
#include "platform/long_path.h"

#include <algorithm>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

FileResult<FileDescriptor> enterOrCreate(int folder, const std::string& name) {
  auto entered = openPlace(folder, name.c_str(), FinalLink::followed);
  if (entered || entered.error().code != ENOENT) return entered;
  if (auto created = createFolder(folder, name.c_str()); !created)
    return tl::make_unexpected(created.error());
  return openPlace(folder, name.c_str(), FinalLink::followed);
}

}  // namespace

FileResult<void> createFolders(const Path& path) {
  std::string_view rest = path.native();
  auto folder = openPlace(AT_FDCWD, rest.starts_with('/') ? "/" : ".", FinalLink::followed);
  for (auto name = takeFirstName(rest); folder && !name.empty(); name = takeFirstName(rest)) {
    folder = enterOrCreate(folder->get(), std::string(name));
  }
  if (!folder) return tl::make_unexpected(folder.error());
  return {};
}

FileResult<void> createFolder(int parent, const char* name) {
  const int answer = uninterrupted([&] { return ::mkdirat(parent, name, 0777); });
  if (answer < 0 && errno != EEXIST) return failureToCreate(parent);
  return {};
}

std::string_view takeFirstName(std::string_view& path) {
  path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
  const std::string_view name = path.substr(0, path.find('/'));
  path.remove_prefix(name.size());
  return name;
}

}  // namespace kestrova
