#include "imaging/exif/exif_values.h"
#include "imaging/photo_properties.h"
#include "imaging/photo_rewrite.h"
#include "imaging/png/png_chunks.h"
#include "support/external_tool.h"
#include "support/photo_reading.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

// Every value that makes pixels turn must be set to 1 after they have turned, or the next run turns them
// again. And every value that states a pixel size must state the new one.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr int width = 96;
constexpr int height = 64;
const RewriteRequest turned{.size = {}, .upright = true};
const RewriteRequest scaled{.size = PixelSize{32, 48}, .upright = true};

/// An Exif block with orientation 6, written in one of the ways that the reader accepts.
struct Block {
  std::string name;
  TiffBlock block;
  std::uint16_t pointerType = 4;  ///< of the entry that leads to the Exif directory
  std::uint16_t magic = 42;

  Bytes encode() const { return finished(block); }

  /// The same as a TIFF file of its own.
  Bytes encodeAsFile() const {
    TiffBlock file = block;
    file.pixels = samplePixels(width, height);
    for (const auto& [tag, value] : {std::pair<int, int>{0x0100, width},
                                     {0x0101, height},
                                     {0x0103, 1},
                                     {0x0106, 2},
                                     {0x0115, 3},
                                     {0x0116, height}}) {
      file.image.push_back(tiffLong(static_cast<std::uint16_t>(tag), static_cast<std::uint64_t>(value)));
    }
    file.image.push_back({.tag = 0x0102, .type = TiffType::shortInt, .values = {8, 8, 8}});
    return finished(file);
  }

 private:
  Bytes finished(const TiffBlock& source) const {
    Bytes bytes = source.encode();
    setShort(bytes, 2, source.bigTiff ? std::uint16_t{43} : magic);
    for (std::size_t i = 0; i + 4 < bytes.size(); ++i) {
      if (shortAt(bytes, i) == exifDirectoryTag && shortAt(bytes, i + 2) == 4) {
        setShort(bytes, i + 2, pointerType);
        break;
      }
    }
    return bytes;
  }
  std::uint16_t shortAt(const Bytes& bytes, std::size_t at) const {
    const auto first = bytes[at + (block.bigEndian ? 0 : 1)];
    const auto second = bytes[at + (block.bigEndian ? 1 : 0)];
    return static_cast<std::uint16_t>(first << 8 | second);
  }
  void setShort(Bytes& bytes, std::size_t at, std::uint16_t number) const {
    bytes[at + (block.bigEndian ? 0 : 1)] = static_cast<std::uint8_t>(number >> 8);
    bytes[at + (block.bigEndian ? 1 : 0)] = static_cast<std::uint8_t>(number);
  }
};

Block plainBlock(bool bigEndian, bool bigTiff) {
  Block result{.name = std::string(bigTiff ? "BigTIFF" : "TIFF") + (bigEndian ? " MM" : " II"), .block = {}};
  result.block.bigEndian = bigEndian;
  result.block.bigTiff = bigTiff;
  result.block.image = {tiffShort(0x0112, 6)};
  result.block.exif = {tiffLong(0xA002, width), tiffLong(0xA003, height)};
  return result;
}

/// The types of whole numbers that the reader knows.
std::vector<TiffType> numberTypes(bool bigTiff) {
  std::vector<TiffType> types{TiffType::byte,       TiffType::shortInt,    TiffType::longInt,
                              TiffType::signedByte, TiffType::signedShort, TiffType::signedLong,
                              TiffType::directory};
  if (bigTiff) types.insert(types.end(), {TiffType::long8, TiffType::signedLong8, TiffType::directory8});
  return types;
}

void addTypes(std::vector<Block>& blocks, const Block& plain) {
  for (const TiffType type : numberTypes(plain.block.bigTiff)) {
    const std::string number = std::to_string(static_cast<int>(type));
    blocks.push_back(plain);
    blocks.back().name += ", orientation of type " + number;
    blocks.back().block.image[0].type = type;
    blocks.push_back(plain);
    blocks.back().name += ", size of type " + number;
    for (TiffEntry& entry : blocks.back().block.exif) entry.type = type;
  }
  for (const std::uint16_t type : {std::uint16_t{9}, std::uint16_t{13}}) {
    blocks.push_back(plain);
    blocks.back().name += ", Exif directory of type " + std::to_string(type);
    blocks.back().pointerType = type;
  }
}

std::vector<Block> acceptedBlocks() {
  std::vector<Block> blocks;
  for (const bool bigEndian : {false, true}) {
    for (const bool bigTiff : {false, true}) addTypes(blocks, plainBlock(bigEndian, bigTiff));
    for (const std::uint16_t magic : {std::uint16_t{0x55}, std::uint16_t{0x4F52}, std::uint16_t{0x5352}}) {
      blocks.push_back(plainBlock(bigEndian, false));
      blocks.back().name += ", magic " + std::to_string(magic);
      blocks.back().magic = magic;
    }
    blocks.push_back(plainBlock(bigEndian, false));
    blocks.back().name += ", two orientations";
    blocks.back().block.image = {tiffShort(0x0112, 6), tiffShort(0x0112, 3)};
    blocks.push_back(plainBlock(bigEndian, false));
    blocks.back().name += ", an orientation of 0 first";
    blocks.back().block.image = {tiffShort(0x0112, 0), tiffShort(0x0112, 6)};
  }
  return blocks;
}

struct Photo {
  std::string name;
  std::string extension;
  Bytes file;
};

Bytes jpegWith(const Bytes& block, std::uint8_t afterName) {
  Bytes segment = exifSegment(block);
  segment[9] = afterName;
  Bytes jpeg = jpegPhoto({.width = width, .height = height, .exif = false});
  jpeg.insert(jpeg.begin() + 2, segment.begin(), segment.end());
  return jpeg;
}

Bytes pngWith(const Bytes& data) {
  Bytes png = pngPhoto({.width = width, .height = height, .exif = false});
  const Bytes chunk = pngChunk("eXIf", data);
  png.insert(png.begin() + 33, chunk.begin(), chunk.end());
  return png;
}

/// Every block in every place where the reader finds it.
std::vector<Photo> acceptedPhotos() {
  std::vector<Photo> photos;
  for (const Block& block : acceptedBlocks()) {
    const Bytes bytes = block.encode();
    const Bytes named = joined({Bytes{'E', 'x', 'i', 'f', 0, 0}, bytes});
    photos.push_back({block.name + " in a JPEG", ".jpg", jpegWith(bytes, 0)});
    photos.push_back({block.name + " in a JPEG after another name", ".jpg", jpegWith(bytes, 1)});
    photos.push_back({block.name + " in a PNG", ".png", pngWith(bytes)});
    photos.push_back({block.name + " in a PNG after a JPEG's name", ".png", pngWith(named)});
    photos.push_back({block.name + " as a file", ".tif", block.encodeAsFile()});
  }
  return photos;
}

/// What the Exif block of a photo says, wherever it is.
ExifValues exifOf(const Bytes& photo) {
  if (imageTypeOf(photo) == ImageType::tiff) return readExif(photo);
  const std::string_view name("Exif\0", 5);
  const auto found =
      std::search(photo.begin(), photo.end(), name.begin(), name.end(),
                  [](std::uint8_t byte, char c) { return byte == static_cast<std::uint8_t>(c); });
  if (found != photo.end()) return readExif(ByteView(found + 6, photo.end()));
  ExifValues values;
  visitPngChunks(photo, [&](const PngChunk& chunk) {
    if (chunk.type == "eXIf") values = readExif(chunk.data);
  });
  return values;
}

void expectUpright(const Photo& photo, const Bytes& result, const PixelSize& size) {
  EXPECT_EQ(readPhotoProperties(result)->orientation, 1) << photo.name;
  EXPECT_EQ(readPhotoProperties(result)->pixelWidth, size.width) << photo.name;
  EXPECT_EQ(readPhotoProperties(result)->pixelHeight, size.height) << photo.name;
  EXPECT_EQ(exifOf(result).pixelXDimension, size.width) << photo.name;
  EXPECT_EQ(exifOf(result).pixelYDimension, size.height) << photo.name;
}

/// Whether a photo with such a block can be written at all: libtiff reads no raw files and no wrong
/// orientation, Exiv2 writes no BigTIFF.
bool isWritable(const Photo& photo) {
  const auto says = [&](std::string_view text) { return photo.name.find(text) != std::string::npos; };
  return photo.extension != ".tif" || !(says("BigTIFF") || says("magic") || says("orientation of 0"));
}

TEST(PhotoRewriteGuard, LeavesNothingThatWouldTurnThePixelsAgain) {
  for (const Photo& photo : acceptedPhotos()) {
    ASSERT_EQ(readPhotoProperties(photo.file)->orientation, 6) << photo.name;
    ASSERT_EQ(exifOf(photo.file).pixelXDimension, width) << photo.name;
    for (const RewriteRequest& request : {turned, scaled}) {
      const auto result = rewritten(photo.file, request);
      ASSERT_EQ(result.has_value(), isWritable(photo)) << photo.name;
      if (result) expectUpright(photo, *result, request.size.value_or(PixelSize{height, width}));
    }
  }
}

// The size that the source states may be wrong: only the pixels decide.
TEST(PhotoRewriteGuard, StatesTheSizeOfTheWrittenPixels) {
  Block block = plainBlock(false, false);
  block.block.exif = {tiffLong(0xA002, 4000), tiffLong(0xA003, 3000)};
  const std::vector<Bytes> photos{jpegWith(block.encode(), 0), pngWith(block.encode()), block.encodeAsFile()};
  for (const Bytes& photo : photos) {
    for (const bool upright : {false, true}) {
      for (const bool scales : {false, true}) {
        const PixelSize stored = scales ? PixelSize{48, 32} : PixelSize{width, height};
        const PixelSize seen = upright ? PixelSize{stored.height, stored.width} : stored;
        const auto size = scales ? std::optional(seen) : std::nullopt;
        const ExifValues values = exifOf(mustRewrite(photo, {.size = size, .upright = upright}));
        EXPECT_EQ(values.pixelXDimension, seen.width);
        EXPECT_EQ(values.pixelYDimension, seen.height);
      }
    }
  }
}

TEST(PhotoRewriteGuard, LeavesNothingThatExiftoolWouldTakeForAnotherOrientationOrSize) {
  const TemporaryFolder folder;
  std::vector<Photo> photos;
  for (Photo& photo : acceptedPhotos()) {
    if (const auto result = rewritten(photo.file, scaled)) {
      writeFile(folder / (std::to_string(photos.size()) + photo.extension), *result);
      photos.push_back(std::move(photo));
    }
  }
  const ToolRun run = runTool(
      "exiftool", {"-q", "-q", "-n", "-f", "-p", "$FileName $Orientation $ExifImageWidth $ExifImageHeight",
                   folder.path().native()});
  std::istringstream lines(run.output);
  std::size_t count = 0;
  for (std::string name, orientation, x, y; lines >> name >> orientation >> x >> y; ++count) {
    const Photo& photo = photos.at(std::stoul(name));
    EXPECT_TRUE(orientation == "1" || orientation == "-") << photo.name << ": " << orientation;
    EXPECT_TRUE(x == "32" || x == "-") << photo.name << ": " << x;
    EXPECT_TRUE(y == "48" || y == "-") << photo.name << ": " << y;
  }
  EXPECT_EQ(count, photos.size()) << run.errors;
}

}  // namespace
}  // namespace kestrova::imaging
