#include "support/folder_state.h"

#include <set>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;

std::int64_t nanoseconds(const timespec& time) {
  constexpr std::int64_t perSecond = 1000000000;
  return time.tv_sec * perSecond + time.tv_nsec;
}

ItemState stateOfItem(const Path& path) {
  struct stat status = {};
  if (::lstat(path.c_str(), &status) != 0) throw std::system_error(errno, std::generic_category(), path);
  ItemState state{.inode = status.st_ino,
                  .mode = status.st_mode,
                  .modified = nanoseconds(status.st_mtim),
                  .changed = nanoseconds(status.st_ctim),
                  .contents = {}};
  if (S_ISLNK(status.st_mode)) state.contents = fs::read_symlink(path).native();
  if (S_ISREG(status.st_mode) && ::access(path.c_str(), R_OK) == 0) state.contents = readFile(path);
  return state;
}

}  // namespace

FolderState stateOf(const Path& folder) {
  FolderState states;
  if (!fs::exists(folder)) return states;
  states.emplace(".", stateOfItem(folder));
  constexpr auto passingOver = fs::directory_options::skip_permission_denied;
  for (const auto& entry : fs::recursive_directory_iterator(folder, passingOver)) {
    states.emplace(entry.path().lexically_relative(folder).native(), stateOfItem(entry.path()));
  }
  return states;
}

std::vector<std::string> changes(const FolderState& before, const FolderState& after) {
  std::set<std::string> names;
  for (const auto& [name, state] : before) {
    const auto found = after.find(name);
    if (found == after.end() || found->second != state) names.insert(name);
  }
  for (const auto& [name, state] : after) {
    if (!before.contains(name)) names.insert(name);
  }
  return {names.begin(), names.end()};
}

}  // namespace kestrova::test
