// Compares each file below a folder with the one of the same path below another, in one process: what has to
// be read in any case to know that two trees are equal. Exit status 1 if a file differs or cannot be read.
//   kestrova-compare-trees FOLDER OTHER
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class File {
 public:
  explicit File(const fs::path& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// Bytes read; -1 after an error.
  ssize_t read(std::vector<char>& buffer) const { return ::read(descriptor_, buffer.data(), buffer.size()); }

 private:
  int descriptor_;
};

bool areEqual(const fs::path& one, const fs::path& other) {
  static std::vector<char> bytes(std::size_t{128} * 1024);
  static std::vector<char> otherBytes(bytes.size());
  const File file(one);
  const File otherFile(other);
  for (;;) {
    const ssize_t count = file.read(bytes);
    if (count < 0 || count != otherFile.read(otherBytes)) return false;
    if (std::memcmp(bytes.data(), otherBytes.data(), static_cast<std::size_t>(count)) != 0) return false;
    if (count == 0) return true;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return std::fputs("kestrova-compare-trees: two folders are wanted\n", stderr), 2;
  const fs::path folder = argv[1];
  const fs::path other = argv[2];
  int status = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file() || areEqual(entry.path(), other / entry.path().lexically_relative(folder)))
      continue;
    std::printf("%s differs\n", entry.path().c_str());
    status = 1;
  }
  return status;
}
