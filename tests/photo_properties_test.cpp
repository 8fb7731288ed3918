#include "imaging/photo_properties.h"

#include "support/sample_media.h"

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr std::size_t prefixSize = 40960;

PhotoProperties readPrefix(const Bytes& file, std::size_t size = prefixSize) {
  const auto properties = readPhotoProperties(ByteView(file).first(std::min(size, file.size())));
  EXPECT_TRUE(properties.has_value());
  return properties.value_or(PhotoProperties());
}

SamplePhoto sample() {
  return {.width = 96,
          .height = 64,
          .orientation = 6,
          .digitized = "2014:05:21 13:45:02",
          .taken = "2013:01:02 03:04:05"};
}

void expectSample(const PhotoProperties& read) {
  EXPECT_EQ(read.orientation, 6);
  EXPECT_EQ(read.pixelWidth, 96);
  EXPECT_EQ(read.pixelHeight, 64);
  EXPECT_EQ(read.digitized(), "2014:05:21 13:45:02");
}

void append(Bytes& to, const Bytes& bytes) {
  to.resize(to.size() + bytes.size());
  std::ranges::copy(bytes, to.end() - std::ssize(bytes));
}

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes whole;
  for (const Bytes& part : parts) append(whole, part);
  return whole;
}

const Bytes startOfImage{0xFF, 0xD8};
const Bytes startOfScan{0xFF, 0xDA, 0x00, 0x02};

Bytes frameHeader(std::uint8_t marker, std::uint16_t width, std::uint16_t height) {
  const auto high = [](std::uint16_t n) { return static_cast<std::uint8_t>(n >> 8); };
  const auto low = [](std::uint16_t n) { return static_cast<std::uint8_t>(n); };
  return jpegSegment(marker, Bytes{8, high(height), low(height), high(width), low(width), 1, 1, 0x11, 0});
}

/// A little-endian block with one entry in its first directory.
Bytes blockWith(const TiffEntry& entry) {
  TiffBlock block;
  block.image = {entry};
  return block.encode();
}

Bytes blockWithExif(const TiffEntry& entry) {
  TiffBlock block;
  block.exif = {entry};
  return block.encode();
}

/// What a JPEG with this Exif block says.
PhotoProperties readBlock(const Bytes& block) {
  return readPrefix(joined({startOfImage, exifSegment(block), frameHeader(0xC0, 96, 64)}));
}

std::string digitizedOf(const Bytes& block) { return std::string(readBlock(block).digitized()); }

/// Where an entry of this tag stands in a little-endian block.
std::size_t entryOf(const Bytes& block, std::uint16_t tag) {
  const Bytes bytes{static_cast<std::uint8_t>(tag), static_cast<std::uint8_t>(tag >> 8)};
  const auto found = std::search(block.begin(), block.end(), bytes.begin(), bytes.end());
  return static_cast<std::size_t>(found - block.begin());
}

void setWord(Bytes& block, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) block.at(at + i) = static_cast<std::uint8_t>(value >> 8 * i);
}

constexpr std::uint16_t orientationTag = 0x0112;
constexpr std::uint16_t exifDirectoryTag = 0x8769;
constexpr std::uint16_t digitizedTag = 0x9004;

/// One photo of every kind that is made here, small, so that each byte of it can be tried.
std::vector<Bytes> photosOfEveryKind() {
  std::vector<Bytes> photos;
  for (bool bigEndian : {false, true}) {
    SamplePhoto photo = sample();
    photo.width = 24;
    photo.height = 16;
    photo.bigEndian = bigEndian;
    photo.exifPixelSize = true;
    photos.insert(photos.end(), {jpegPhoto(photo), pngPhoto(photo), tiffPhoto(photo)});
    photo.bigTiff = true;
    photos.push_back(tiffPhoto(photo));
    photo.thumbnail = photo.progressive = true;
    photos.push_back(jpegPhoto(photo));
  }
  return photos;
}

/// Reads bytes that end exactly where their memory ends, so that the address sanitizer sees every step too
/// far.
void readHostile(const Bytes& bytes) {
  const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[bytes.size()]);
  std::ranges::copy(bytes, exact.get());
  const auto read = readPhotoProperties({exact.get(), bytes.size()});
  if (!read) return;
  EXPECT_TRUE(read->orientation.value_or(1) >= 1 && read->orientation.value_or(1) <= 8);
  EXPECT_GE(read->pixelWidth.value_or(1), 1);
  EXPECT_GE(read->pixelHeight.value_or(1), 1);
  EXPECT_LE(read->digitizedLength, read->digitizedText.size());
}

}  // namespace

TEST(PhotoProperties, ReadsAJpegInEitherByteOrder) {
  SamplePhoto photo = sample();
  expectSample(readPrefix(jpegPhoto(photo)));
  photo.bigEndian = true;
  expectSample(readPrefix(jpegPhoto(photo)));
}

TEST(PhotoProperties, ReadsAProgressiveJpegWithAPreview) {
  SamplePhoto photo = sample();
  photo.progressive = photo.thumbnail = true;
  expectSample(readPrefix(jpegPhoto(photo)));
}

TEST(PhotoProperties, ReadsATiffInEitherByteOrder) {
  SamplePhoto photo = sample();
  expectSample(readPrefix(tiffPhoto(photo)));
  photo.bigEndian = true;
  expectSample(readPrefix(tiffPhoto(photo)));
}

TEST(PhotoProperties, ReadsABigTiffInEitherByteOrder) {
  SamplePhoto photo = sample();
  photo.bigTiff = true;
  expectSample(readPrefix(tiffPhoto(photo)));
  photo.bigEndian = true;
  expectSample(readPrefix(tiffPhoto(photo)));
}

TEST(PhotoProperties, ReadsAPngInEitherByteOrder) {
  SamplePhoto photo = sample();
  expectSample(readPrefix(pngPhoto(photo)));
  photo.bigEndian = true;
  expectSample(readPrefix(pngPhoto(photo)));
}

TEST(PhotoProperties, ReadsTheRawFilesThatAreTiffInAllButTheirMagic) {
  for (const int magic : {0x55, 0x4F52, 0x5352}) {
    Bytes tiff = tiffPhoto(sample());
    tiff.at(2) = static_cast<std::uint8_t>(magic);
    tiff.at(3) = static_cast<std::uint8_t>(magic >> 8);
    expectSample(readPrefix(tiff));
  }
}

TEST(PhotoProperties, ReadsEveryOrientation) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    SamplePhoto photo = sample();
    photo.orientation = orientation;
    EXPECT_EQ(readPrefix(jpegPhoto(photo)).orientation, orientation);
    EXPECT_EQ(readPrefix(pngPhoto(photo)).orientation, orientation);
    EXPECT_EQ(readPrefix(tiffPhoto(photo)).orientation, orientation);
  }
}

TEST(PhotoProperties, TakesAnOrientationOfAnyWholeNumberType) {
  for (auto type : {1, 3, 4, 6, 8, 9, 13}) {
    Bytes block = blockWith(tiffLong(orientationTag, 8));
    block.at(entryOf(block, orientationTag) + 2) = static_cast<std::uint8_t>(type);
    EXPECT_EQ(readBlock(block).orientation, 8) << "type " << type;
  }
}

TEST(PhotoProperties, TakesAnOrientationOfEightBytesInABigTiff) {
  TiffBlock block;
  block.bigTiff = true;
  block.image = {{orientationTag, TiffType::long8, {3}}};
  EXPECT_EQ(readPrefix(block.encode()).orientation, 3);
}

TEST(PhotoProperties, PassesOverAnOrientationThatIsNoWholeNumber) {
  for (auto type : {0, 2, 5, 7, 10, 11, 12, 16, 99, 255}) {
    Bytes block = blockWith(tiffLong(orientationTag, 8));
    block.at(entryOf(block, orientationTag) + 2) = static_cast<std::uint8_t>(type);
    EXPECT_EQ(readBlock(block).orientation, std::nullopt) << "type " << type;
  }
}

TEST(PhotoProperties, PassesOverAnOrientationOutsideOneToEight) {
  for (std::uint64_t value : {0U, 9U, 255U, 0x0600U, 0xFFFFU}) {
    EXPECT_EQ(readBlock(blockWith(tiffShort(orientationTag, value))).orientation, std::nullopt) << value;
  }
}

TEST(PhotoProperties, PassesOverANegativeOrientation) {
  for (auto type : {6, 8, 9}) {
    Bytes block = blockWith(tiffLong(orientationTag, 0xFFFFFFFF));
    block.at(entryOf(block, orientationTag) + 2) = static_cast<std::uint8_t>(type);
    EXPECT_EQ(readBlock(block).orientation, std::nullopt) << "type " << type;
  }
}

TEST(PhotoProperties, TakesTheFirstOrientationThatMakesSense) {
  TiffBlock block;
  block.image = {tiffShort(orientationTag, 0), tiffShort(orientationTag, 6), tiffShort(orientationTag, 3)};
  EXPECT_EQ(readBlock(block.encode()).orientation, 6);
}

TEST(PhotoProperties, LeavesOutTheTimeOfTaking) {
  SamplePhoto photo = sample();
  photo.digitized.clear();
  EXPECT_EQ(readPrefix(jpegPhoto(photo)).digitized(), "");
}

TEST(PhotoProperties, LooksForTheDigitizingTimeInTheExifDirectoryOnly) {
  EXPECT_EQ(digitizedOf(blockWith(tiffText(digitizedTag, "2014:05:21 13:45:02"))), "");
}

TEST(PhotoProperties, CutsTheDigitizingTimeAtANulByte) {
  EXPECT_EQ(digitizedOf(blockWithExif(tiffText(digitizedTag, std::string_view("2014:05:21\0 13:45:02", 20)))),
            "2014:05:21");
}

TEST(PhotoProperties, TrimsBlanksAtTheEndOfTheDigitizingTimeOnly) {
  EXPECT_EQ(digitizedOf(blockWithExif(tiffText(digitizedTag, " 2014:05:21 13:45:02   "))),
            " 2014:05:21 13:45:02");
  EXPECT_EQ(digitizedOf(blockWithExif(tiffText(digitizedTag, "                   "))), "");
}

TEST(PhotoProperties, TakesADigitizingTimeWithoutAClosingNul) {
  TiffEntry entry = tiffText(digitizedTag, "2014:05:21 13:45:02");
  entry.values.pop_back();
  EXPECT_EQ(digitizedOf(blockWithExif(entry)), "2014:05:21 13:45:02");
}

TEST(PhotoProperties, ReadsAShortTextFromTheEntryItself) {
  EXPECT_EQ(digitizedOf(blockWithExif(tiffText(digitizedTag, "201"))), "201");
  EXPECT_EQ(digitizedOf(blockWithExif(tiffText(digitizedTag, ""))), "");
}

TEST(PhotoProperties, PassesOverADigitizingTimeThatIsNoText) {
  TiffEntry entry = tiffText(digitizedTag, "2014:05:21 13:45:02");
  entry.type = TiffType::undefined;
  EXPECT_EQ(digitizedOf(blockWithExif(entry)), "");
}

TEST(PhotoProperties, TakesTheFirstDigitizingTimeThatHasAText) {
  TiffBlock block;
  block.exif = {tiffText(digitizedTag, "   "), tiffText(digitizedTag, "2014:05:21 13:45:02"),
                tiffText(digitizedTag, "later")};
  EXPECT_EQ(digitizedOf(block.encode()), "2014:05:21 13:45:02");
}

TEST(PhotoProperties, TakesAShortTextThatEndsBeforeTheCut) {
  Bytes block = blockWithExif(tiffText(digitizedTag, std::string_view("2014:05:21\0 13:45:02", 20)));
  constexpr std::size_t behindTheNul = 9;
  block.resize(block.size() - 1 - behindTheNul);
  EXPECT_EQ(digitizedOf(block), "2014:05:21");
}

TEST(PhotoProperties, KeepsTheFirst32BytesOfALongText) {
  EXPECT_EQ(digitizedOf(blockWithExif(tiffText(digitizedTag, std::string(100, 'x')))), std::string(32, 'x'));
}

TEST(PhotoProperties, TakesTheFrameHeaderForThePixelSizeWhateverExifSays) {
  TiffBlock block;
  block.exif = {tiffLong(0xA002, 4000), tiffLong(0xA003, 3000)};
  const PhotoProperties read = readBlock(block.encode());
  EXPECT_EQ(read.pixelWidth, 96);
  EXPECT_EQ(read.pixelHeight, 64);
}

TEST(PhotoProperties, TakesTheExifPixelSizeWhenTheFrameHeaderLiesBeyondThePrefix) {
  SamplePhoto photo = sample();
  photo.exifPixelSize = true;
  Bytes jpeg = jpegPhoto(photo);
  const Bytes profile = jpegSegment(0xE2, Bytes(60000, 'p'));
  const auto afterExif = 2 + std::ssize(exifSegment(exifBlock(photo).encode()));
  jpeg.insert(jpeg.begin() + afterExif, profile.begin(), profile.end());
  expectSample(readPrefix(jpeg));
}

TEST(PhotoProperties, KnowsEveryKindOfFrameHeader) {
  for (std::uint8_t marker = 0xC0; marker <= 0xCF; ++marker) {
    const bool isFrame = marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    const PhotoProperties read = readPrefix(joined({startOfImage, frameHeader(marker, 4000, 399)}));
    EXPECT_EQ(read.pixelWidth, isFrame ? std::optional(4000) : std::nullopt) << int{marker};
    EXPECT_EQ(read.pixelHeight, isFrame ? std::optional(399) : std::nullopt) << int{marker};
  }
}

TEST(PhotoProperties, PassesOverAPixelSizeOfZero) {
  const PhotoProperties read = readPrefix(joined({startOfImage, frameHeader(0xC0, 96, 0)}));
  EXPECT_EQ(read.pixelWidth, 96);
  EXPECT_EQ(read.pixelHeight, std::nullopt);
}

TEST(PhotoProperties, PassesOverFillBytesJunkAndStandaloneMarkers) {
  const Bytes exif = exifSegment(exifBlock(sample()).encode());
  const Bytes fill{0xFF, 0xFF, 0xFF};
  const Bytes junk{0x12, 0x00, 0x34};
  const Bytes standalone{0xFF, 0x01, 0xFF, 0xD0, 0xFF, 0xD7, 0xFF, 0x00};
  const Bytes tooShort{0xFF, 0xE5, 0x00, 0x01};
  expectSample(
      readPrefix(joined({startOfImage, fill, exif, junk, standalone, tooShort, frameHeader(0xC2, 96, 64)})));
}

TEST(PhotoProperties, PassesOverASegmentThatClaimsToBeShorterThanItsLengthField) {
  for (const int length : {0, 1}) {
    Bytes frame = frameHeader(0xC0, 96, 64);
    frame.at(3) = static_cast<std::uint8_t>(length);
    EXPECT_EQ(readPrefix(joined({startOfImage, frame})).pixelWidth, std::nullopt);
  }
}

TEST(PhotoProperties, LooksNoFurtherThanTheFirstScan) {
  const PhotoProperties read = readPrefix(joined({startOfImage, startOfScan, frameHeader(0xC0, 96, 64)}));
  EXPECT_EQ(read.pixelWidth, std::nullopt);
}

TEST(PhotoProperties, FindsTheExifBlockBehindAnXmpBlock) {
  const std::string xmp = "http://ns.adobe.com/xap/1.0/";
  const Bytes segment = jpegSegment(0xE1, Bytes(xmp.begin(), xmp.end()));
  expectSample(readPrefix(
      joined({startOfImage, segment, exifSegment(exifBlock(sample()).encode()), frameHeader(0xC0, 96, 64)})));
}

TEST(PhotoProperties, TakesTheFirstOfSeveralExifBlocks) {
  SamplePhoto other = sample();
  other.orientation = 3;
  other.digitized = "1999:09:09 09:09:09";
  expectSample(readPrefix(joined({startOfImage, exifSegment(exifBlock(sample()).encode()),
                                  exifSegment(exifBlock(other).encode()), frameHeader(0xC0, 96, 64)})));
}

TEST(PhotoProperties, TakesTheFirstOfSeveralPngExifChunks) {
  SamplePhoto other = sample();
  other.digitized = "1999:09:09 09:09:09";
  Bytes png = pngPhoto(other);
  const Bytes chunk = pngChunk("eXIf", exifBlock(sample()).encode());
  png.insert(png.begin() + 33, chunk.begin(), chunk.end());
  expectSample(readPrefix(png));
}

TEST(PhotoProperties, FindsThePngExifChunkBehindThePixels) {
  SamplePhoto photo = sample();
  photo.exif = false;
  Bytes png = pngPhoto(photo);
  constexpr std::ptrdiff_t lastChunk = 12;
  const Bytes chunk = pngChunk("eXIf", exifBlock(photo).encode());
  png.insert(png.end() - lastChunk, chunk.begin(), chunk.end());
  expectSample(readPrefix(png));
}

TEST(PhotoProperties, ReadsAPngExifChunkThatBeginsLikeAJpegSegment) {
  const Bytes segment = exifSegment(exifBlock(sample()).encode());
  Bytes png = pngPhoto({.width = 96, .height = 64, .exif = false});
  const Bytes chunk = pngChunk("eXIf", ByteView(segment).subspan(4));
  png.insert(png.begin() + 33, chunk.begin(), chunk.end());
  expectSample(readPrefix(png));
}

TEST(PhotoProperties, KnowsAPhotoWithoutExifByItsPixelSizeAlone) {
  const SamplePhoto photo{.width = 96, .height = 64, .exif = false};
  for (const Bytes& file : {jpegPhoto(photo), pngPhoto(photo), tiffPhoto(photo)}) {
    const PhotoProperties read = readPrefix(file);
    EXPECT_EQ(read.orientation, std::nullopt);
    EXPECT_EQ(read.pixelWidth, 96);
    EXPECT_EQ(read.pixelHeight, 64);
    EXPECT_EQ(read.digitized(), "");
  }
}

TEST(PhotoProperties, ReturnsNothingForOtherContent) {
  EXPECT_FALSE(readPhotoProperties({}));
  EXPECT_FALSE(readPhotoProperties(videoFile(5000)));
  EXPECT_FALSE(readPhotoProperties(Bytes(100, 0)));
  EXPECT_FALSE(readPhotoProperties(Bytes{'I', 'M', 42, 0, 8, 0, 0, 0}));
  EXPECT_FALSE(readPhotoProperties(Bytes{'I', 'I', 44, 0, 8, 0, 0, 0}));
}

TEST(PhotoProperties, ReadsWhatStandsBeforeACutInsideTheExifBlock) {
  SamplePhoto photo = sample();
  photo.makerNoteBytes = 50000;
  photo.exifPixelSize = true;
  const Bytes jpeg = jpegPhoto(photo);
  ASSERT_GT(exifSegment(exifBlock(photo).encode()).size(), prefixSize);
  expectSample(readPrefix(jpeg));
}

TEST(PhotoProperties, LeavesOutWhatStandsBehindACutInsideTheExifBlock) {
  SamplePhoto photo = sample();
  photo.descriptionBytes = 50000;
  photo.exifPixelSize = true;
  const PhotoProperties read = readPrefix(jpegPhoto(photo));
  EXPECT_EQ(read.orientation, 6);
  EXPECT_EQ(read.pixelWidth, std::nullopt);
  EXPECT_EQ(read.digitized(), "");
}

TEST(PhotoProperties, LeavesOutADateThatTheCutHalves) {
  const SamplePhoto photo = sample();
  const Bytes jpeg = jpegPhoto(photo);
  const std::size_t dateAt =
      static_cast<std::size_t>(std::ranges::search(jpeg, photo.digitized).begin() - jpeg.begin());
  for (std::size_t letters = 0; letters < photo.digitized.size(); ++letters) {
    EXPECT_EQ(readPrefix(jpeg, dateAt + letters).digitized(), "") << letters;
  }
  EXPECT_EQ(readPrefix(jpeg, dateAt + photo.digitized.size()).digitized(), photo.digitized);
}

TEST(PhotoProperties, ReadsUpToTheSegmentsEndWhenTheDirectoryIsCutThere) {
  Bytes block = exifBlock(sample()).encode();
  block.resize(entryOf(block, exifDirectoryTag) + 11);
  const PhotoProperties read = readBlock(block);
  EXPECT_EQ(read.orientation, 6);
  EXPECT_EQ(read.digitized(), "");
}

TEST(PhotoProperties, WithstandsOffsetsThatPointOutside) {
  for (std::uint32_t offset : {0U, 1U, 7U, 100000U, 0x7FFFFFFFU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
    const Bytes whole = exifBlock(sample()).encode();
    Bytes block = whole;
    setWord(block, 4, offset);
    EXPECT_EQ(readBlock(block).orientation, std::nullopt) << offset;
    block = whole;
    setWord(block, entryOf(block, exifDirectoryTag) + 8, offset);
    EXPECT_EQ(readBlock(block).orientation, 6);
    EXPECT_EQ(readBlock(block).digitized(), "") << offset;
    block = whole;
    setWord(block, entryOf(block, digitizedTag) + 8, std::max(offset, 100000U));
    EXPECT_EQ(readBlock(block).digitized(), "") << offset;
  }
}

TEST(PhotoProperties, FindsNoDirectoryInTheHeader) {
  // Taken for a directory, the magic would be a count and the second entry an orientation.
  const Bytes tiff{'I', 'I', 42,   0,    2, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                   0,   0,   0x12, 0x01, 3, 0, 1, 0, 0, 0, 6, 0, 0, 0};
  EXPECT_EQ(readPrefix(tiff).orientation, std::nullopt);
}

TEST(PhotoProperties, WithstandsDirectoriesThatPointAtEachOther) {
  Bytes block = exifBlock(sample()).encode();
  setWord(block, entryOf(block, exifDirectoryTag) + 8, 8);
  EXPECT_EQ(readBlock(block).orientation, 6);
  EXPECT_EQ(readBlock(block).digitized(), "");
}

TEST(PhotoProperties, WithstandsADirectoryThatClaimsMoreEntriesThanThereAre) {
  Bytes block = exifBlock(sample()).encode();
  block.at(8) = block.at(9) = 0xFF;
  EXPECT_EQ(readBlock(block).orientation, 6);
  EXPECT_EQ(readBlock(block).digitized(), "2014:05:21 13:45:02");
}

TEST(PhotoProperties, WithstandsABigTiffDirectoryThatClaimsMoreEntriesThanThereAre) {
  SamplePhoto photo = sample();
  photo.bigTiff = true;
  Bytes tiff = tiffPhoto(photo);
  std::fill_n(tiff.begin() + 16, 8, std::uint8_t{0xFF});
  EXPECT_EQ(readPrefix(tiff).orientation, 6);
}

TEST(PhotoProperties, WithstandsCountsBeyondAllBounds) {
  for (std::uint32_t count : {0xFFFFU, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    Bytes block = exifBlock(sample()).encode();
    setWord(block, entryOf(block, orientationTag) + 4, count);
    setWord(block, entryOf(block, digitizedTag) + 4, count);
    EXPECT_EQ(readBlock(block).orientation, std::nullopt) << count;
    EXPECT_EQ(readBlock(block).digitized(), "2014:05:21 13:45:02") << count;
  }
}

TEST(PhotoProperties, WithstandsSegmentAndChunkLengthsThatReachOutside) {
  Bytes jpeg = jpegPhoto(sample());
  jpeg.at(4) = jpeg.at(5) = 0xFF;
  EXPECT_EQ(readPrefix(jpeg).digitized(), "2014:05:21 13:45:02");
  Bytes png = pngPhoto(sample());
  std::fill_n(png.begin() + 33, 4, std::uint8_t{0xFF});
  EXPECT_EQ(readPrefix(png).digitized(), "2014:05:21 13:45:02");
}

TEST(PhotoProperties, WithstandsACutAtEveryByte) {
  for (const Bytes& photo : photosOfEveryKind()) {
    for (std::size_t size = 0; size <= photo.size(); ++size) {
      readHostile(Bytes(photo.begin(), photo.begin() + static_cast<std::ptrdiff_t>(size)));
    }
  }
}

TEST(PhotoProperties, WithstandsAThousandRandomChangesOfEachPhoto) {
  std::mt19937 random(20140521);
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  for (const Bytes& photo : photosOfEveryKind()) {
    for (int round = 0; round < 1000; ++round) {
      Bytes changed = photo;
      for (std::size_t changes = below(12); changes > 0; --changes) {
        changed.at(below(changes % 2 ? changed.size() : std::min<std::size_t>(changed.size(), 300))) =
            static_cast<std::uint8_t>(random());
      }
      if (round % 2) changed.resize(below(changed.size()));
      readHostile(changed);
    }
  }
}

}  // namespace kestrova::imaging
