#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace kestrova::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "kestrova-test-XXXXXX").native();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

namespace {

/// Moves every subfolder up to the top before it is emptied, so that no path ever gets long, and then removes
/// the rest.
void removeTree(const Path& top) {
  std::error_code ignored;
  std::vector<Path> folders = {top};
  for (std::size_t next = 0; next < folders.size(); ++next) {
    const Path folder = folders[next];
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    const std::vector<fs::directory_entry> entries(fs::directory_iterator(folder, ignored), {});
    for (const auto& entry : entries) {
      if (!entry.is_directory(ignored) || entry.is_symlink(ignored)) {
        fs::remove(entry, ignored);
      } else {
        folders.push_back(top / ("kestrova-removed-" + std::to_string(folders.size())));
        fs::rename(entry, folders.back(), ignored);
      }
    }
  }
  while (!folders.empty()) {
    fs::remove(folders.back(), ignored);
    folders.pop_back();
  }
}

}  // namespace

TemporaryFolder::~TemporaryFolder() { removeTree(path_); }

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
  std::string contents(fs::file_size(path), '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.read(contents.data(), static_cast<std::streamsize>(contents.size())))
    throw std::runtime_error("cannot read " + path.native());
  return contents;
}

Bytes bytesOf(const Path& path) {
  const std::string text = readFile(path);
  return {text.begin(), text.end()};
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
