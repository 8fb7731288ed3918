#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kestrova::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "kestrova-test-XXXXXX").native();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  for (auto entry = fs::recursive_directory_iterator(path_, fs::directory_options::skip_permission_denied, ignored);
       entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
    if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
      fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path_, ignored);
}

Path writeFile(const Path& path, std::string_view contents) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.native());
  return path;
}

Path writeFile(const Path& path, ByteView contents) {
  return writeFile(path, std::string_view(reinterpret_cast<const char*>(contents.data()), contents.size()));
}

std::string readFile(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.native());
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> filesBelow(const Path& folder) {
  std::vector<std::string> names;
  if (!fs::exists(folder)) return names;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) names.push_back(entry.path().lexically_relative(folder).native());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace kestrova::test
