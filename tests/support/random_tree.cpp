#include "support/random_tree.h"

#include "support/sample_media.h"
#include "support/text_bytes.h"

#include <QString>
#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <random>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t prefixLength = 40960;  // what a run reads to compare and to date a file
constexpr int filesPerTree = 48;

/// A possible content of a file.
struct Medium {
  std::string contents;
  std::string extension;
  std::string digitized = {};  ///< as a run reads it; empty: the file's own date counts
};

const std::array<std::string, 5> dates{"2014:05:21 13:45:02", "2014:05:21 13:45:03", "1999:12:31 23:59:59",
                                       "1965:01:02 03:04:05", "2060:02:29 00:00:00"};

std::string digitsOf(const std::string& date) {
  std::string digits;
  std::ranges::copy_if(date, std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
  return digits;
}

std::time_t secondsOf(const std::string& date) {
  std::tm fields{};
  if (strptime(date.c_str(), "%Y:%m:%d %H:%M:%S", &fields) == nullptr) throw std::logic_error(date);
  return timegm(&fields);
}

Bytes withLateExif(const Bytes& jpeg) {
  constexpr std::uint8_t comment = 0xFE;
  return joined({Bytes(jpeg.begin(), jpeg.begin() + 2), jpegSegment(comment, Bytes(prefixLength, ' ')),
                 Bytes(jpeg.begin() + 2, jpeg.end())});
}

std::vector<Medium> makePhotos() {
  const auto jpeg = [](SamplePhoto photo, const std::string& digitized) {
    photo.digitized = digitized;
    return textOf(jpegPhoto(photo));
  };
  const std::string turned = jpeg({.width = 480, .height = 420, .seed = 1, .orientation = 6}, dates[1]);
  return {
      {jpeg({.width = 480, .height = 420}, dates[0]), "jpg", dates[0]},
      {turned, "jpg", dates[1]},
      {turned.substr(0, turned.size() / 2), "jpeg", dates[1]},
      {jpeg({.width = 900, .height = 740, .seed = 2, .orientation = 1}, dates[0]), "jpg", dates[0]},
      {jpeg({.width = 410, .height = 730, .seed = 3, .orientation = 8}, ""), "jpeg"},
      {jpeg({.width = 90, .height = 60, .seed = 4, .orientation = 3}, dates[0]), "jpg", dates[0]},
      {textOf(withLateExif(jpegPhoto({.width = 90, .height = 60, .seed = 5, .orientation = 6}))), "jpg"},
      {textOf(pngPhoto({.width = 90, .height = 60, .orientation = 6, .digitized = dates[1]})), "png",
       dates[1]},
      {textOf(tiffPhoto({.width = 90, .height = 60, .orientation = 3, .digitized = dates[0]})), "tif",
       dates[0]},
      {"not a photo at all", "jpg"},
      {"", "jpg"},
  };
}

class TreeWriter {
 public:
  TreeWriter(const Path& folder, unsigned seed) : random_(seed), folders_{folder} {
    fs::create_directories(folder);
    for (const char* name : {"DCIM", "Old \xff disk\n", ".hidden", "100%25 'best'"}) addFolder(name);
  }

  std::vector<TreeFile> write() {
    for (int i = 0; i < filesPerTree; ++i) writeNext();
    writeLockedFolder();
    std::vector<TreeFile> files;
    for (const Written& written : written_) files.push_back(written.file);
    return files;
  }

 private:
  struct Written {
    TreeFile file;
    Medium medium;
    std::string modified;
  };

  std::size_t below(std::size_t limit) { return random_() % limit; }
  template <typename Items>
  const auto& oneOf(const Items& items) {
    return items[below(items.size())];
  }

  void addFolder(const char* name) {
    folders_.push_back(oneOf(folders_) / name);
    fs::create_directories(folders_.back());
  }

  void writeNext() {
    const std::size_t kind = written_.empty() ? 0 : below(14);
    if (kind <= 5) {
      writeMedium(oneOf(photos()), oneOf(dates));
    } else if (kind <= 8) {
      writeMedium(video(), oneOf(dates));
    } else {
      writeAfter(oneOf(written_), kind);
    }
  }

  /// A copy, a lookalike, a link or something odd. By value, as writing adds to `written_`.
  void writeAfter(Written earlier, std::size_t kind) {
    if (kind <= 9) {
      writeMedium(earlier.medium, earlier.modified);
    } else if (kind <= 11) {
      writeMedium(lookalikeOf(earlier.medium), earlier.modified);
    } else if (kind == 12) {
      link(earlier);
    } else {
      writeOddThing();
    }
  }

  static const std::vector<Medium>& photos() {
    static const auto made = makePhotos();
    return made;
  }
  Medium video() {
    const std::size_t size = 100 + below(5) * 15000;
    return {textOf(videoFile(size, static_cast<unsigned>(below(4)))), below(2) == 0 ? "mov" : "mp4"};
  }

  /// Another with the same name as its target: one byte differs in its last quarter, which dates no photo.
  Medium lookalikeOf(Medium medium) {
    if (medium.contents.empty()) return medium;
    const std::size_t quarter = medium.contents.size() / 4 + 1;
    char& byte = medium.contents[medium.contents.size() - 1 - below(quarter)];
    byte = static_cast<char>(byte ^ 1);
    return medium;
  }

  void writeMedium(const Medium& medium, const std::string& modified) {
    const bool isReadable = below(8) > 0;
    const bool isDatedByItself = isReadable && !medium.digitized.empty();
    const TreeFile file{.path = newPath(medium.extension),
                        .contents = medium.contents,
                        .extension = medium.extension,
                        .date = digitsOf(isDatedByItself ? medium.digitized : modified),
                        .isReadable = isReadable};
    writeFile(file.path, file.contents);
    setModified(file.path, modified);
    constexpr std::array modes{0644U, 0600U, 0444U};
    fs::permissions(file.path, isReadable ? fs::perms(oneOf(modes)) : fs::perms::none);
    written_.push_back({file, medium, modified});
  }

  void link(Written earlier) {
    const Path to = earlier.file.path;
    earlier.file.path = newPath(earlier.file.extension);
    if (below(2) == 0) {
      fs::create_hard_link(to, earlier.file.path);
    } else {
      fs::create_symlink(to, earlier.file.path);
    }
    written_.push_back(earlier);
  }

  /// What a run skips and must not fail on.
  void writeOddThing() {
    const Path path = newPath("jpg");
    switch (below(5)) {
      case 0:
        writeFile(Path(path).replace_extension("txt"), "notes");
        break;
      case 1:
        fs::create_symlink(path.parent_path() / "missing.jpg", path);
        break;
      case 2:
        fs::create_directory(path);
        break;
      case 3:
        fs::create_directory_symlink(folders_.front(), path);
        break;
      default:
        if (mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error("no FIFO");
    }
  }

  void writeLockedFolder() {
    const Path locked = oneOf(folders_) / "locked";
    writeFile(locked / "unseen.jpg", "unseen");
    fs::permissions(locked, fs::perms::none);
  }

  void setModified(const Path& path, const std::string& date) {
    const timespec time{secondsOf(date), static_cast<long>(below(1000)) * 1000000};
    const timespec times[] = {time, time};
    if (utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) throw std::runtime_error("no file time");
  }

  Path newPath(const std::string& extension) {
    const std::array<std::string, 8> names{"IMG_", "-rf",    "line\nend",  "bytes\xff\xfe\x80",
                                           ".dot", "100%25", "quote\"'\\", std::string(235, 'n')};
    const std::string number = std::to_string(++number_);
    const QString ending = QString::fromStdString(extension);
    return oneOf(folders_) /
           (oneOf(names) + number + '.' + (below(2) == 0 ? ending : ending.toUpper()).toStdString());
  }

  std::mt19937 random_;
  std::vector<Path> folders_;
  std::vector<Written> written_;
  int number_ = 0;
};

}  // namespace

bool TreeFile::isVideo() const { return extension == "mov" || extension == "mp4"; }

std::string TreeFile::targetName() const {
  const QString ending = QString::fromStdString(extension).toUpper();
  return date.substr(0, 4) + '/' + date.substr(4, 2) + '/' + date.substr(6, 2) + '/' +
         (isVideo() ? "VIDEO_" : "PHOTO_") + date + '_' + std::to_string(contents.size()) + '.' +
         ending.toStdString();
}

std::vector<TreeFile> writeRandomTree(const Path& folder, unsigned seed) {
  return TreeWriter(folder, seed).write();
}

}  // namespace kestrova::test
