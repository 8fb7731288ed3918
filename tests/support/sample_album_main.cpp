#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <ctime>
#include <exception>
#include <functional>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <vector>

// Writes a small album of generated photos and videos, as a household has them: some twice, some stored
// sideways, some without a date of their own. kestrova-sample-album FOLDER

namespace {

using namespace kestrova;
using namespace kestrova::test;

struct AlbumFile {
  std::string name;
  std::string modified;  ///< "yyyy:MM:dd HH:mm:ss", local time
  Bytes contents;
};

std::chrono::system_clock::time_point localTime(const std::string& text) {
  std::tm time{};
  std::istringstream(text) >> std::get_time(&time, "%Y:%m:%d %H:%M:%S");
  time.tm_isdst = -1;
  return std::chrono::system_clock::from_time_t(std::mktime(&time));
}

void writeAlbumFile(const Path& folder, const AlbumFile& file) {
  const Path path = writeFile(folder / file.name, file.contents);
  std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(localTime(file.modified)));
}

const std::string copiedToDisk = "2021:03:06 18:20:00";

SamplePhoto photo(unsigned seed, const std::string& digitized, std::optional<int> orientation = {}) {
  SamplePhoto made;
  made.width = 800;
  made.height = 600;
  made.seed = seed;
  made.digitized = made.taken = digitized;
  made.orientation = orientation;
  made.exifPixelSize = true;
  made.thumbnail = seed % 2 == 0;
  made.bigEndian = seed % 3 == 0;
  return made;
}

std::vector<AlbumFile> phoneFiles() {
  std::vector<AlbumFile> files;
  const auto add = [&files](const std::string& name, const Bytes& contents,
                            const std::string& modified = copiedToDisk) {
    files.push_back({"Phone/" + name, modified, contents});
  };
  add("IMG_0001.jpg", jpegPhoto(photo(1, "2016:04:02 09:12:44", 1)));
  add("IMG_0002.jpg", jpegPhoto(photo(2, "2016:04:02 09:13:10", 6)));
  add("IMG_0003.jpg", jpegPhoto(photo(3, "2016:07:19 20:41:05", 6)));
  add("IMG_0004.jpg", jpegPhoto(photo(4, "2016:07:19 20:41:09", 8)));
  add("IMG_0005.jpg", jpegPhoto(photo(5, "2017:01:01 00:00:03", 3)));
  add("IMG_0006.jpg", jpegPhoto(photo(6, "2017:05:28 11:30:00")));
  add("IMG_0007.JPG", jpegPhoto(photo(7, "2017:05:28 11:30:21")));
  add("IMG_0008.jpeg", jpegPhoto(photo(8, "2018:08:12 16:02:37")));
  add("MOV_0009.mp4", videoFile(2'400'000, 9), "2018:08:12 16:05:00");
  add("MOV_0010.mov", videoFile(2'000'000, 10), "2018:12:24 19:00:12");
  add("Received/picture.jpg", jpegPhoto({.width = 800, .height = 600, .seed = 11, .exif = false}),
      "2018:10:03 08:15:30");
  add("Received/sticker.jpg", jpegPhoto({.width = 160, .height = 120, .seed = 12, .exif = false}),
      "2018:10:04 21:09:00");
  add("Received/screen.png", pngPhoto(photo(13, "2018:11:11 11:11:11")));
  return files;
}

std::vector<AlbumFile> cameraFiles() {
  std::vector<AlbumFile> files;
  const auto add = [&files](int number, const Bytes& contents) {
    files.push_back({"Camera/100KESTR/KEST" + std::to_string(number) + ".JPG", copiedToDisk, contents});
  };
  add(1001, jpegPhoto(photo(21, "2014:05:21 13:45:02")));
  add(1002, jpegPhoto(photo(22, "2014:05:21 13:45:02")));
  add(1003, jpegPhoto(photo(23, "2014:05:21 13:47:50", 8)));
  add(1004, jpegPhoto(photo(24, "2014:05:22 07:58:13")));
  add(1005, jpegPhoto(photo(25, "2014:09:30 17:20:00", 1)));
  add(1006, jpegPhoto(photo(26, "2015:02:14 12:00:00")));
  // Two different photos of exactly one size.
  add(1007, paddedJpeg(jpegPhoto(photo(27, "2015:02:14 12:00:08")), 200'000));
  add(1008, paddedJpeg(jpegPhoto(photo(28, "2015:06:01 10:10:10")), 200'000));
  files.push_back({"Camera/100KESTR/KEST1009.MP4", "2015:06:01 10:12:00", videoFile(3'000'000, 29)});
  files.push_back({"Camera/100KESTR/KEST1010.AVI", "2015:06:01 10:20:00", videoFile(300'000, 30)});
  return files;
}

std::vector<AlbumFile> oldDiskFiles() {
  SamplePhoto scanned = photo(41, "2003:12:24 18:00:00", 6);
  scanned.taken.clear();
  return {
      {"Old disk/Backup/IMG_0001.jpg", "2019:01:05 12:00:00", jpegPhoto(photo(1, "2016:04:02 09:12:44", 1))},
      {"Old disk/Backup/IMG_0003 copy.jpg", "2019:01:05 12:00:01",
       jpegPhoto(photo(3, "2016:07:19 20:41:05", 6))},
      {"Old disk/Backup/wedding.JPG", "2019:01:05 12:00:02", jpegPhoto(photo(24, "2014:05:22 07:58:13"))},
      {"Old disk/Backup/christmas.mp4", "2019:01:05 12:00:03", videoFile(2'000'000, 10)},
      {"Old disk/Scans/grandmother.jpg", copiedToDisk, jpegPhoto(scanned)},
      {"Old disk/Scans/negative.tif", copiedToDisk, tiffPhoto(photo(42, "2004:08:15 15:30:00"))},
      {"Old disk/Scans/undated.jpg", "2004:08:15 16:00:00",
       jpegPhoto({.width = 800, .height = 600, .seed = 43, .digitized = ""})},
      {"Old disk/notes.txt", "2004:08:15 16:05:00", {'S', 'c', 'a', 'n', 's', '\n'}},
  };
}

void writeAlbum(const Path& folder) {
  for (const auto& part : {phoneFiles(), cameraFiles(), oldDiskFiles()}) {
    for (const AlbumFile& file : part) writeAlbumFile(folder, file);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: kestrova-sample-album FOLDER\n";
    return 2;
  }
  try {
    writeAlbum(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "kestrova-sample-album: " << error.what() << '\n';
    return 1;
  }
}
