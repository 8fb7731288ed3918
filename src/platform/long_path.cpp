#include "platform/long_path.h"

#include "platform/file_error.h"

#include <string>
#include <string_view>

#include <fcntl.h>

namespace kestrova {

namespace {

const std::string current = ".";

constexpr std::ptrdiff_t mostBytes = PATH_MAX - 1;

#ifdef O_PATH
constexpr int searchOnly = O_PATH;
#else
constexpr int searchOnly = O_SEARCH;
#endif

}  // namespace

const int PathAddress::currentFolder = AT_FDCWD;

FileResult<PathAddress> PathAddress::of(const std::string& path) {
  PathAddress address(path.c_str());
  const char* const end = path.c_str() + path.size();
  while (end - address.rest_ > mostBytes) {
    if (const auto entered = address.enterFirstFolders(); !entered)
      return tl::make_unexpected(entered.error());
  }
  if (address.folder_ && *address.rest_ == '\0') address.rest_ = ".";
  return address;
}

FileResult<void> PathAddress::enterFirstFolders() {
  const std::string_view longest(rest_, mostBytes);
  const std::size_t slash = longest.find_last_of('/');
  if (slash == 0 || slash == std::string_view::npos) return failure(ENAMETOOLONG);
  auto entered = openPlace(folder(), std::string(longest.substr(0, slash)).c_str(), FinalLink::followed);
  if (!entered) return tl::make_unexpected(entered.error());
  folder_ = std::move(*entered);
  rest_ += slash;
  while (*rest_ == '/') ++rest_;
  return {};
}

FileResult<FileDescriptor> openPlace(int folder, const char* path, FinalLink finalLink) {
  const int linkFlag = finalLink == FinalLink::refused ? O_NOFOLLOW : 0;
  FileDescriptor place(
      uninterrupted([&] { return ::openat(folder, path, searchOnly | O_DIRECTORY | O_CLOEXEC | linkFlag); }));
  if (!place) return failure();
  return place;
}

FileResult<FileDescriptor> openPlace(const Path& path) {
  const auto address = PathAddress::of(path.empty() ? current : path.native());
  if (!address) return tl::make_unexpected(address.error());
  return openPlace(address->folder(), address->rest(), FinalLink::followed);
}

}  // namespace kestrova
