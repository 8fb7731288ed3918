#pragma once

#include "platform/file_manager.h"

#include <string>
#include <string_view>

namespace kestrova::test {

/// A folder of its own for one test; removed with all that is in it, however deep, when the test ends.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const Path& path() const { return path_; }
  Path operator/(const Path& name) const { return path_ / name; }

 private:
  Path path_;
};

/// Writes a file with these bytes, creating the folders above it, and returns its path.
Path writeFile(const Path& path, std::string_view contents);
Path writeFile(const Path& path, ByteView contents);
std::string readFile(const Path& path);
Bytes bytesOf(const Path& path);

/// All regular files below a folder, as paths relative to it, in byte order.
std::vector<std::string> filesBelow(const Path& folder);

}  // namespace kestrova::test
