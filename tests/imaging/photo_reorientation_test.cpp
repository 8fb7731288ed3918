#include "imaging/photo_properties.h"
#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/photo_types.h"
#include "support/rewriting.h"
#include "support/temporary_folder.h"

#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

// Photos of every type and orientation, turned upright or kept as they are stored.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::Combine;
using testing::Range;
using testing::Values;

// Likenesses in decibels.
constexpr double differentByRounding = 48;  ///< the same coefficients decoded in another order
constexpr double alikeWhenReencoded = 38;   ///< a JPEG that cannot be turned without loss
constexpr double alikePreview = 30;         ///< small and of low quality
constexpr double alikeWhenScaled = 45;      ///< by another program's Lanczos filter
constexpr double alikeJpegsWhenScaled = 33;
constexpr double alikeSmallJpegsWhenScaled = 31;

double turnedLikeness(ImageType type) { return type == ImageType::jpeg ? alikeWhenReencoded : identical; }

/// Turned by ImageMagick, which gets the orientation: it does not look for it in every type.
Picture turnedPicture(const Path& file, std::int64_t orientation,
                      const std::vector<std::string>& scaling = {}) {
  static const std::vector<std::string> names{"TopLeft", "TopRight", "BottomRight", "BottomLeft",
                                              "LeftTop", "RightTop", "RightBottom", "LeftBottom"};
  std::vector<std::string> operations{"-orient", names.at(static_cast<std::size_t>(orientation - 1)),
                                      "-auto-orient"};
  operations.insert(operations.end(), scaling.begin(), scaling.end());
  return pictureOf(file, operations);
}

using OrientedType = std::tuple<ImageType, int>;

class OrientedPhotoTest : public testing::TestWithParam<OrientedType> {
 protected:
  ImageType type() const { return std::get<0>(GetParam()); }
  int orientation() const { return std::get<1>(GetParam()); }
  SamplePhoto sample(int width, int height) const {
    return {.width = width,
            .height = height,
            .orientation = orientation(),
            .exifPixelSize = true,
            .thumbnail = true};
  }
  /// The photo as a viewer that honours its tag shows it.
  Picture seen(const Bytes& photo, const std::vector<std::string>& scaling = {}) const {
    return turnedPicture(writeFile(folder_ / "seen", photo), *readPhotoProperties(photo)->orientation,
                         scaling);
  }
  Picture stored(const Bytes& photo) const { return pictureOf(writeFile(folder_ / "stored", photo)); }
  TemporaryFolder folder_;
};

TEST_P(OrientedPhotoTest, StandsUprightInWholeBlocks) {
  const Bytes source = photoOf(type(), sample(208, 144));
  const Bytes result = turnedUpright(source);
  EXPECT_EQ(readPhotoProperties(result)->orientation, 1);
  EXPECT_GE(likeness(seen(source), stored(result)),
            type() == ImageType::jpeg ? differentByRounding : identical);
}

TEST_P(OrientedPhotoTest, StandsUprightInAnySize) {
  const Bytes source = photoOf(type(), sample(203, 141));
  const Bytes result = turnedUpright(source);
  EXPECT_EQ(readPhotoProperties(result)->orientation, 1);
  EXPECT_GE(likeness(seen(source), stored(result)), turnedLikeness(type()));
}

TEST_P(OrientedPhotoTest, StandsUprightWhenScaled) {
  const Bytes source = photoOf(type(), sample(403, 301));
  const PixelSize whole = test::sizeOf(source)->upright();
  const PixelSize wanted{whole.width * 2 / 5, whole.height * 2 / 5};
  const Bytes result = mustRewrite(source, toSizeUpright(wanted));
  EXPECT_EQ(test::sizeOf(result)->stored, wanted);
  const std::string size = std::to_string(wanted.width) + "x" + std::to_string(wanted.height) + "!";
  EXPECT_GE(likeness(seen(source, {"-filter", "Lanczos", "-resize", size}), seen(result)),
            type() == ImageType::jpeg ? alikeJpegsWhenScaled : alikeWhenScaled);
}

TEST_P(OrientedPhotoTest, KeepsPixelsAndTagAsStoredWhenNotToBeTurned) {
  const Bytes source = photoOf(type(), sample(203, 141));
  const Bytes result = scaled(source, {101, 70});
  EXPECT_EQ(readPhotoProperties(result)->orientation, orientation());
  EXPECT_EQ(test::sizeOf(result)->stored, (PixelSize{101, 70}));
  const std::string size = orientation() >= 5 ? "70x101!" : "101x70!";
  EXPECT_GE(likeness(seen(source, {"-filter", "Lanczos", "-resize", size}), seen(result)),
            type() == ImageType::jpeg ? alikeSmallJpegsWhenScaled : alikeWhenScaled);
}

TEST_P(OrientedPhotoTest, ReportsItsSizeAsStoredAndAsSeen) {
  const auto size = test::sizeOf(photoOf(type(), sample(203, 141)));
  ASSERT_TRUE(size);
  EXPECT_EQ(size->orientation, orientation());
  EXPECT_EQ(size->stored, (PixelSize{203, 141}));
  EXPECT_EQ(size->upright(), (orientation() >= 5 ? PixelSize{141, 203} : PixelSize{203, 141}));
}

TEST_P(OrientedPhotoTest, KeepsAJpegInItsMakerNoteByteForByte) {
  const Bytes jpeg = jpegPhoto({.width = 96, .height = 48, .exif = false});
  SamplePhoto photo = sample(208, 144);
  photo.makerNote = jpeg;
  const Bytes source = photoOf(type(), photo);
  EXPECT_TRUE(contains(turnedUpright(source), jpeg));
  EXPECT_TRUE(contains(scaled(source, {104, 72}), jpeg));
}

class OrientedJpegTest : public OrientedPhotoTest {};

TEST_P(OrientedJpegTest, HasAPreviewThatIsTurnedWithIt) {
  const Bytes source = photoOf(type(), sample(416, 288));
  const auto preview = [&](const std::string& name, const Bytes& photo) {
    const Path path = writeFile(folder_ / name, photo);
    return writeFile(folder_ / (name + ".preview"),
                     runTool("exiftool", {"-b", "-ThumbnailImage", path.native()}).output);
  };
  const auto expected = turnedPicture(preview("source", source), orientation());
  EXPECT_GE(likeness(expected, pictureOf(preview("result", turnedUpright(source)))), alikePreview);
}

std::string orientedName(const testing::TestParamInfo<OrientedType>& test) {
  return nameOf(std::get<0>(test.param)) + std::to_string(std::get<1>(test.param));
}

INSTANTIATE_TEST_SUITE_P(AllTypes, OrientedPhotoTest, Combine(allTypes, Range(1, 9)), orientedName);
INSTANTIATE_TEST_SUITE_P(Previews, OrientedJpegTest, Combine(Values(ImageType::jpeg), Range(1, 9)),
                         orientedName);

}  // namespace
}  // namespace kestrova::imaging
