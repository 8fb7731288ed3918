#include "support/photo_reading.h"

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

// Photos that are cut off, wrong or malicious.

namespace kestrova::imaging {

using namespace kestrova::test;

namespace {

/// One photo of every kind that is generated here, small, so that each of its bytes can be tried.
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

/// Reads bytes that end exactly where their memory ends, so that the address sanitizer sees every read past
/// the end.
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

TEST(PhotoProperties, ReadsWhatStandsBeforeACutInsideTheExifBlock) {
  SamplePhoto photo = sample();
  photo.makerNoteBytes = 50000;
  photo.exifPixelSize = true;
  const Bytes jpeg = jpegPhoto(photo);
  ASSERT_GT(exifSegment(exifBlock(photo).encode()).size(), prefixSize);
  expectSample(readPrefix(jpeg));
}

TEST(PhotoProperties, LeavesOutWhatComesAfterACutInsideTheExifBlock) {
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
