#include "support/photo_reading.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

namespace kestrova::imaging {

using namespace kestrova::test;

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
  block.image = {{.tag = orientationTag, .type = TiffType::long8, .values = {3}}};
  EXPECT_EQ(readPrefix(block.encode()).orientation, 3);
}

TEST(PhotoProperties, SkipsAnOrientationThatIsNotAWholeNumber) {
  for (auto type : {0, 2, 5, 7, 10, 11, 12, 16, 99, 255}) {
    Bytes block = blockWith(tiffLong(orientationTag, 8));
    block.at(entryOf(block, orientationTag) + 2) = static_cast<std::uint8_t>(type);
    EXPECT_EQ(readBlock(block).orientation, std::nullopt) << "type " << type;
  }
}

TEST(PhotoProperties, SkipsAnOrientationOutsideOneToEight) {
  for (std::uint64_t value : {0U, 9U, 255U, 0x0600U, 0xFFFFU}) {
    EXPECT_EQ(readBlock(blockWith(tiffShort(orientationTag, value))).orientation, std::nullopt) << value;
  }
}

TEST(PhotoProperties, SkipsANegativeOrientation) {
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

TEST(PhotoProperties, SkipsADigitizingTimeThatIsNotText) {
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
  constexpr std::ptrdiff_t afterTheNul = 9;
  block.erase(block.end() - 1 - afterTheNul, block.end());
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

TEST(PhotoProperties, SkipsAPixelSizeOfZero) {
  const PhotoProperties read = readPrefix(joined({startOfImage, frameHeader(0xC0, 96, 0)}));
  EXPECT_EQ(read.pixelWidth, 96);
  EXPECT_EQ(read.pixelHeight, std::nullopt);
}

TEST(PhotoProperties, SkipsFillBytesJunkAndStandaloneMarkers) {
  const Bytes exif = exifSegment(exifBlock(sample()).encode());
  const Bytes fill{0xFF, 0xFF, 0xFF};
  const Bytes junk{0x12, 0x00, 0x34};
  const Bytes standalone{0xFF, 0x01, 0xFF, 0xD0, 0xFF, 0xD7, 0xFF, 0x00};
  const Bytes tooShort{0xFF, 0xE5, 0x00, 0x01};
  expectSample(
      readPrefix(joined({startOfImage, fill, exif, junk, standalone, tooShort, frameHeader(0xC2, 96, 64)})));
}

TEST(PhotoProperties, SkipsASegmentThatClaimsToBeShorterThanItsLengthField) {
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

TEST(PhotoProperties, FindsTheExifBlockAfterAnXmpBlock) {
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
  const Bytes first = pngChunk("eXIf", exifBlock(sample()).encode());
  expectSample(readPrefix(withChunks(pngPhoto(other), {first})));
}

TEST(PhotoProperties, FindsThePngExifChunkAfterThePixels) {
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
  const Bytes png = pngPhoto({.width = 96, .height = 64, .exif = false});
  expectSample(readPrefix(withChunks(png, {pngChunk("eXIf", ByteView(segment).subspan(4))})));
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

}  // namespace kestrova::imaging
