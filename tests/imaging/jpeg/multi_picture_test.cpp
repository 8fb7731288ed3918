#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/jpeg/named_payload.h"
#include "support/external_tool.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

// JPEG files of several pictures and the index that leads to them.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr double differentByRounding = 45;  // dB: the same coefficients decoded in another order

/// A photo with further pictures after it and the index that leads there; big-endian.
Bytes multiPicture(const Bytes& first, const std::vector<Bytes>& further) {
  Bytes index = named(std::string_view("MPF\0MM\0*\0\0\0\10\0\3", 14), 0, 0);
  const auto number = [&](std::size_t value, int bytes) {
    while (bytes-- > 0) index.push_back(static_cast<std::uint8_t>(value >> 8 * bytes));
  };
  const auto entry = [&](std::size_t tag, std::size_t type, std::size_t count, std::size_t value) {
    number(tag, 2), number(type, 2), number(count, 4), number(value, 4);
  };
  constexpr std::size_t entriesAt = 8 + 2 + 3 * 12 + 4;
  const std::size_t entriesBytes = 16 * (1 + further.size());
  entry(0xB000, 7, 4, 0x30313030);
  entry(0xB001, 4, 1, 1 + further.size());
  entry(0xB002, 7, entriesBytes, entriesAt);
  number(0, 4);
  const std::size_t base = 2 + 4 + 4;  // where offsets count from, in the file
  std::size_t end = first.size() + 4 + 4 + entriesAt + entriesBytes;
  number(0x20030000, 4), number(end, 4), number(0, 4), number(0, 4);
  for (const Bytes& picture : further) {
    number(0x00020002, 4), number(picture.size(), 4), number(end - base, 4), number(0, 4);
    end += picture.size();
  }
  Bytes file = withSegments(first, {jpegSegment(0xE2, index)});
  for (const Bytes& picture : further) file.insert(file.end(), picture.begin(), picture.end());
  return file;
}

class MultiPictureTest : public testing::Test {
 protected:
  Bytes secondPicture(const Bytes& file) {
    const Path path = writeFile(folder_ / "multi.jpg", file);
    const std::string text = runTool("exiftool", {"-b", "-MPImage2", path.native()}).output;
    return {text.begin(), text.end()};
  }
  TemporaryFolder folder_;
};

TEST_F(MultiPictureTest, FindsItsSecondPictureAfterTheScaledFirst) {
  const Bytes second = jpegPhoto({.width = 80, .height = 48, .seed = 5, .exif = false});
  const Bytes source = multiPicture(jpegPhoto({.width = 640, .height = 400}), {second});
  ASSERT_EQ(secondPicture(source), second);
  EXPECT_EQ(secondPicture(scaled(source, {320, 200})), second);
}

TEST_F(MultiPictureTest, HasItsSecondPictureTurnedWithTheFirst) {
  const Bytes second = jpegPhoto({.width = 96, .height = 48, .seed = 5, .exif = false});
  const Bytes source = multiPicture(jpegPhoto({.width = 320, .height = 192, .orientation = 6}), {second});
  const Bytes turned = secondPicture(turnedUpright(source));
  EXPECT_GE(likeness(pictureOf(writeFile(folder_ / "turned.jpg", turned)),
                     pictureOf(writeFile(folder_ / "second.jpg", second), {"-rotate", "90"})),
            differentByRounding);
}

TEST_F(MultiPictureTest, KeepsAnIndexThatNamesNoOtherPicture) {
  const Bytes index = jpegSegment(0xE2, named(std::string_view("MPF\0II*\0\10\0\0\0\0\0", 14), 8, 0));
  const Bytes source = withSegments(jpegPhoto({.width = 64, .height = 48, .orientation = 6}), {index});
  EXPECT_TRUE(contains(turnedUpright(source), index));
  EXPECT_TRUE(contains(scaled(source, {32, 24}), index));
}

TEST_F(MultiPictureTest, LosesAnIndexThatCannotBeKeptRight) {
  const Bytes second(500, 7);
  const Bytes source = multiPicture(jpegPhoto({.width = 320, .height = 192, .orientation = 6}), {second});
  const Bytes result = turnedUpright(source);
  EXPECT_TRUE(secondPicture(result).empty());
  EXPECT_FALSE(contains(result, second));
  EXPECT_EQ(outlineJpeg(result).imageEnd, result.size());
}

TEST_F(MultiPictureTest, KeepsASecondPictureThatStatesItsOwnOrientation) {
  const Bytes second = jpegPhoto({.width = 96, .height = 48, .seed = 5, .orientation = 6});
  const Bytes source = multiPicture(jpegPhoto({.width = 320, .height = 192, .orientation = 6}), {second});
  EXPECT_EQ(secondPicture(turnedUpright(source)), second);
}

TEST_F(MultiPictureTest, LosesASecondPictureThatIsLargerThanTheFirst) {
  const Bytes second = jpegPhoto({.width = 1200, .height = 1000, .seed = 5, .exif = false});
  const Bytes source = multiPicture(jpegPhoto({.width = 320, .height = 192, .orientation = 6}), {second});
  EXPECT_TRUE(secondPicture(turnedUpright(source)).empty());
}

TEST_F(MultiPictureTest, LosesPicturesThatAreVeryMany) {
  const Bytes first = jpegPhoto({.width = 64, .height = 48, .orientation = 6});
  const Bytes further = jpegPhoto({.width = 32, .height = 16, .exif = false});
  const auto resultOf = [&](std::size_t count) {
    return turnedUpright(multiPicture(first, std::vector<Bytes>(count, further)));
  };
  EXPECT_FALSE(secondPicture(resultOf(16)).empty());
  EXPECT_TRUE(secondPicture(resultOf(17)).empty());
}

TEST_F(MultiPictureTest, LosesPicturesThatOverlap) {
  const Bytes second = jpegPhoto({.width = 32, .height = 16, .exif = false});
  Bytes source = multiPicture(jpegPhoto({.width = 64, .height = 48, .orientation = 6}), {second, second});
  const Bytes entry{0, 2, 0, 2};
  const auto one = std::ranges::search(source, entry).begin();
  const auto other = std::search(one + 1, source.end(), entry.begin(), entry.end());
  std::copy_n(one, 16, other);
  EXPECT_TRUE(secondPicture(turnedUpright(source)).empty());
}

TEST_F(MultiPictureTest, StandsAThousandMutations) {
  const Bytes second = jpegPhoto({.width = 64, .height = 48, .seed = 5, .exif = false});
  const Bytes source = withSegments(
      multiPicture(jpegPhoto({.width = 64, .height = 48, .orientation = 6, .thumbnail = true}), {second}),
      {jpegSegment(0xED, named(std::string_view("Photoshop 3.0\0"
                                                "8BIM\4\x0C\0\0\0\0\0\10",
                                                26),
                               60, 1))});
  constexpr int mutations = 1000;
  constexpr std::size_t indexSize = 260;  // index and resources are within so many bytes from the start
  std::mt19937 random(17);
  int written = 0;
  for (int i = 0; i < mutations; ++i) {
    Bytes file = source;
    for (auto changes = 1 + random() % 5; changes > 0; --changes) {
      const std::size_t range = random() % 2 == 0 ? indexSize : file.size();
      file[random() % range] = static_cast<std::uint8_t>(random());
    }
    const auto result = rewritten(file, {.size = PixelSize{24, 32}, .upright = random() % 2 == 0});
    if (!result) continue;
    ++written;
    EXPECT_TRUE(rewritten(*result, asItIs)) << "mutation " << i;
  }
  EXPECT_GT(written, mutations / 10) << "the mutations should not spoil nearly every file";
}

}  // namespace
}  // namespace kestrova::imaging
