#include "imaging/photo_properties.h"
#include "support/patience.h"
#include "support/real_photos.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "support/text_bytes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QVariant>
#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

// Compares what is read from the first bytes of a photo with what exiftool reads from the same bytes. If the
// two differ, the difference must be one of those explained below.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr std::size_t prefixSize = 40960;

struct Photo {
  std::string name;  ///< for people
  std::string extension;
  Bytes file;

  ByteView prefix() const { return ByteView(file).first(std::min(prefixSize, file.size())); }
};

/// What a reader reads from a photo, as texts by field name; an absent value is an empty text.
using Values = std::map<std::string, std::string>;

struct Reading {
  Values values;
  std::string warning;
};

struct Difference {
  std::string photo;
  std::string field;
  std::string ours;
  std::string theirs;
  std::string warning;    ///< exiftool's, of the prefix
  std::string wholeFile;  ///< what exiftool reads when it has the whole file
  int exifBlocks;         ///< in the prefix
};

std::ostream& operator<<(std::ostream& out, const Difference& difference) {
  return out << difference.photo << ": " << difference.field << " is \"" << difference.ours
             << "\" here and \"" << difference.theirs << "\" to exiftool, \"" << difference.wholeFile
             << "\" in the whole file; its warning is \"" << difference.warning << '"';
}

struct Explanation {
  std::string reason;
  std::function<bool(const Difference&)> covers;
};

/// The intended differences.
const std::vector<Explanation> explanations{
    {"exiftool gives up a segment, a chunk or a directory that is cut off; here all is read that stands "
     "before the "
     "cut, and it is what exiftool finds there too when the file is not cut off",
     [](const Difference& d) {
       return d.theirs.empty() && !d.warning.empty() && !d.ours.empty() && d.ours == d.wholeFile;
     }},
    {"only 1 to 8 are orientations; here any other value is none",
     [](const Difference& d) {
       return d.field == "orientation" && d.ours.empty() &&
              !(d.theirs >= "1" && d.theirs <= "8" && d.theirs.size() == 1);
     }},
    {"no date is longer than 32 bytes; here the rest of a longer text is left out",
     [](const Difference& d) {
       return d.field == "digitized" && d.ours.size() == 32 && d.wholeFile.size() > 32 &&
              d.wholeFile.starts_with(d.ours);
     }},
    {"of several Exif blocks the first counts here; exiftool takes the first one's orientation and the last "
     "one's date",
     [](const Difference& d) { return d.field == "digitized" && d.exifBlocks > 1 && !d.ours.empty(); }},
};

int exifBlocksIn(ByteView bytes) {
  constexpr std::string_view name("Exif\0\0", 6);
  const std::string text = test::textOf(bytes);
  int count = 0;
  for (auto at = text.find(name); at != text.npos; at = text.find(name, at + 1)) ++count;
  return count;
}

std::string text(const std::optional<std::int64_t>& number) { return number ? std::to_string(*number) : ""; }

Values ourValues(ByteView prefix) {
  const auto read = readPhotoProperties(prefix);
  if (!read) {
    return {{"recognised", "no"}, {"orientation", ""}, {"width", ""}, {"height", ""}, {"digitized", ""}};
  }
  return {{"recognised", "yes"},
          {"orientation", text(read->orientation)},
          {"width", text(read->pixelWidth)},
          {"height", text(read->pixelHeight)},
          {"digitized", std::string(read->digitized())}};
}

std::string textOf(const QJsonObject& answer, const char* key) {
  return answer.value(QLatin1String(key)).toVariant().toString().toStdString();
}

std::string firstOf(const QJsonObject& answer, std::initializer_list<const char*> keys) {
  for (const char* key : keys) {
    if (std::string found = textOf(answer, key); !found.empty()) return found;
  }
  return {};
}

/// The keys are those of exiftool's family 1; it calls the Exif directory of a BigTIFF file by the entry that
/// leads there, and tag 0x9004 CreateDate.
Reading readingOf(const QJsonObject& answer) {
  static const std::set<std::string> types{"JPEG", "PNG", "TIFF", "BTF"};
  const std::string type = textOf(answer, "File:FileType");
  std::string digitized = firstOf(answer, {"ExifIFD:CreateDate", "ExifOffset:CreateDate"});
  digitized.erase(digitized.find_last_not_of(' ') + 1);
  const bool isJpeg = type == "JPEG";
  return {{{"recognised", types.contains(type) ? "yes" : "no"},
           {"orientation", textOf(answer, "IFD0:Orientation")},
           {"width", isJpeg ? firstOf(answer, {"File:ImageWidth", "ExifIFD:ExifImageWidth"})
                            : firstOf(answer, {"PNG:ImageWidth", "IFD0:ImageWidth"})},
           {"height", isJpeg ? firstOf(answer, {"File:ImageHeight", "ExifIFD:ExifImageHeight"})
                             : firstOf(answer, {"PNG:ImageHeight", "IFD0:ImageHeight"})},
           {"digitized", digitized}},
          firstOf(answer, {"ExifTool:Warning", "ExifTool:Error"})};
}

/// Runs exiftool once over files with numbers as names; its readings are keyed by folder and number.
std::map<Path, Reading> askExiftool(const Path& folder) {
  const QStringList arguments =
      QStringLiteral(
          "-j -n -G1 -r -FileType -Warning -Error -Orientation -CreateDate -ImageWidth "
          "-ImageHeight -ExifImageWidth -ExifImageHeight")
          .split(QLatin1Char(' '));
  QProcess exiftool;
  exiftool.start(QStringLiteral("exiftool"),
                 arguments + QStringList(QString::fromStdString(folder.native())));
  EXPECT_TRUE(exiftool.waitForFinished(static_cast<int>(patience.count())))
      << "exiftool (libimage-exiftool-perl) does not run";
  std::map<Path, Reading> readings;
  for (const QJsonValue& value : QJsonDocument::fromJson(exiftool.readAllStandardOutput()).array()) {
    const Path file = textOf(value.toObject(), "SourceFile");
    readings[file.lexically_relative(folder).replace_extension()] = readingOf(value.toObject());
  }
  return readings;
}

std::vector<Difference> differencesOf(const std::vector<Photo>& photos) {
  const TemporaryFolder folder;
  for (std::size_t i = 0; i < photos.size(); ++i) {
    const std::string name = std::to_string(i) + photos[i].extension;
    writeFile(folder / "prefix" / name, photos[i].prefix());
    writeFile(folder / "whole" / name, photos[i].file);
  }
  const std::map<Path, Reading> readings = askExiftool(folder.path());
  std::vector<Difference> differences;
  for (std::size_t i = 0; i < photos.size(); ++i) {
    const Reading& prefix = readings.at(Path("prefix") / std::to_string(i));
    const Reading& whole = readings.at(Path("whole") / std::to_string(i));
    for (const auto& [field, ours] : ourValues(photos[i].prefix())) {
      const std::string& theirs = prefix.values.at(field);
      if (ours == theirs) continue;
      differences.push_back({photos[i].name, field, ours, theirs, prefix.warning, whole.values.at(field),
                             exifBlocksIn(photos[i].prefix())});
    }
  }
  return differences;
}

void expectEveryDifferenceExplained(const std::vector<Photo>& photos) {
  for (const Difference& difference : differencesOf(photos)) {
    const bool isExplained = std::ranges::any_of(
        explanations, [&](const Explanation& explanation) { return explanation.covers(difference); });
    EXPECT_TRUE(isExplained) << difference;
  }
}

void addInEveryFormat(std::vector<Photo>& photos, const std::string& name, SamplePhoto photo) {
  photo.width = 96;
  photo.height = 64;
  for (const bool bigEndian : {false, true}) {
    photo.bigEndian = bigEndian;
    photo.bigTiff = false;
    const std::string full = name + (bigEndian ? ", big-endian" : ", little-endian");
    photos.push_back({full, ".jpg", jpegPhoto(photo)});
    photos.push_back({full, ".png", pngPhoto(photo)});
    photos.push_back({full, ".tif", tiffPhoto(photo)});
    photo.bigTiff = true;
    photos.push_back({full + ", BigTIFF", ".tif", tiffPhoto(photo)});
  }
}

std::vector<Photo> generatedPhotos() {
  std::vector<Photo> photos;
  for (int orientation = 0; orientation <= 9; ++orientation) {
    addInEveryFormat(photos, "orientation " + std::to_string(orientation), {.orientation = orientation});
  }
  addInEveryFormat(photos, "no Exif", {.exif = false});
  addInEveryFormat(photos, "no digitizing time", {.digitized = "", .taken = "2013:01:02 03:04:05"});
  addInEveryFormat(photos, "Exif pixel size", {.exifPixelSize = true});
  addInEveryFormat(photos, "preview", {.thumbnail = true});
  addInEveryFormat(photos, "Exif cut off after the dates",
                   {.orientation = 6, .exifPixelSize = true, .makerNoteBytes = 50000});
  addInEveryFormat(photos, "Exif cut off before the dates", {.orientation = 6, .descriptionBytes = 50000});
  for (const std::string date :
       {"2014:05:21 13:45", "    :  :     :  :  ", "0000:00:00 00:00:00", "2014:05:21 13:45:02   ",
        "2014-05-21T13:45:02+02:00", "yes", "a text that is far longer than any date could ever be"}) {
    addInEveryFormat(photos, "date \"" + date + "\"", {.digitized = date});
  }
  for (std::size_t i = 0; i < 24; ++i) {
    // The cut moves through the date's bytes.
    addInEveryFormat(photos, "cut near the date", {.descriptionBytes = prefixSize - 220 + 8 * i});
  }
  return photos;
}

std::vector<Photo> photosOfSeveralBlocks() {
  const std::string xmpName("http://ns.adobe.com/xap/1.0/\0<x:xmpmeta xmlns:x='adobe:ns:meta/'/>", 66);
  const Bytes xmp = jpegSegment(0xE1, Bytes(xmpName.begin(), xmpName.end()));
  const Bytes exif = exifSegment(exifBlock({.orientation = 6}).encode());
  const Bytes other = exifSegment(exifBlock({.orientation = 3, .digitized = "1999:09:09 09:09:09"}).encode());
  const Bytes plain = jpegPhoto({.width = 96, .height = 64, .exif = false});
  const auto jpegOf = [&](const std::string& name, const std::vector<Bytes>& segments) {
    return Photo{.name = name, .extension = ".jpg", .file = withSegments(plain, segments)};
  };
  return {jpegOf("XMP before Exif", {xmp, exif}), jpegOf("Exif before XMP", {exif, xmp}),
          jpegOf("two Exif blocks", {exif, other})};
}

using PropertiesOfRealPhotos = RealPhotosTest;

}  // namespace

TEST(PhotoPropertiesAndExiftool, AgreeOverGeneratedPhotos) {
  expectEveryDifferenceExplained(generatedPhotos());
}

TEST(PhotoPropertiesAndExiftool, AgreeOverSeveralBlocksInOnePhoto) {
  expectEveryDifferenceExplained(photosOfSeveralBlocks());
}

TEST_F(PropertiesOfRealPhotos, AgreeWithExiftool) {
  std::vector<Photo> contents;
  for (const Path& photo : photos()) contents.push_back({photo, photo.extension(), bytesOf(photo)});
  expectEveryDifferenceExplained(contents);
}

}  // namespace kestrova::imaging
