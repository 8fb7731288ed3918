#include "imaging/jpeg/jpeg_rewrite.h"

#include "imaging/jpeg/jpeg_encoder.h"
#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Scaling and turning JPEGs of every kind, and what is refused.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::HasSubstr;
using testing::MatchesRegex;

// Likenesses in decibels.
constexpr double alikeWhenScaled = 38;     ///< by another program's Lanczos filter
constexpr double alikeWhenReencoded = 30;  ///< with its chroma sampled again

/// A JPEG as ImageMagick writes the sample picture with these settings.
Bytes madeJpeg(const TemporaryFolder& folder, const std::vector<std::string>& settings, int width = 202,
               int height = 146) {
  const Path source = writeFile(folder / "made.png", pngPhoto({.width = width, .height = height}));
  std::vector<std::string> arguments{source.native(), "-quality", "95"};
  arguments.insert(arguments.end(), settings.begin(), settings.end());
  arguments.push_back((folder / "made.jpg").native());
  EXPECT_EQ(runTool("convert", arguments).status, 0);
  return bytesOf(folder / "made.jpg");
}

std::string describe(const Path& file, const std::string& format) {
  return runTool("identify", {"-format", format, file.native()}).output;
}

/// A photo whose orientation is a quarter turn.
Bytes quarterTurned(const Bytes& jpeg) {
  return withSegments(jpeg, {exifSegment(exifBlock({.orientation = 6}).encode())});
}

struct Kind {
  std::string name;
  std::vector<std::string> settings;
};

void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }

class JpegKindTest : public testing::TestWithParam<Kind> {
 protected:
  double likenessOf(const Bytes& source, const std::vector<std::string>& operations, const Bytes& result) {
    return likeness(pictureOf(writeFile(folder_ / "source.jpg", source), operations),
                    pictureOf(writeFile(folder_ / "result.jpg", result)));
  }
  TemporaryFolder folder_;
};

TEST_P(JpegKindTest, KeepsItsColoursAndItsKindWhenScaled) {
  const Bytes source = madeJpeg(folder_, GetParam().settings);
  const Bytes result = scaled(source, {101, 73});
  EXPECT_GE(likenessOf(source, {"-filter", "Lanczos", "-resize", "101x73!"}, result), alikeWhenScaled);
  const std::string format = "%m %[channels] %[jpeg:colorspace] %[interlace]";
  EXPECT_EQ(describe(folder_ / "source.jpg", format), describe(folder_ / "result.jpg", format));
  EXPECT_THAT(describe(folder_ / "result.jpg", "%[jpeg:sampling-factor]"), MatchesRegex("1x1(,1x1)*"));
}

TEST_P(JpegKindTest, KeepsItsColoursWhenTurned) {
  const Bytes source = madeJpeg(folder_, GetParam().settings);
  const Bytes result = turnedUpright(quarterTurned(source));
  EXPECT_GE(likenessOf(source, {"-rotate", "90"}, result), alikeWhenReencoded);
}

TEST_P(JpegKindTest, TurnsWithoutLossInWholeBlocks) {
  const Bytes source = madeJpeg(folder_, GetParam().settings, 288, 192);
  Bytes turned = source;
  for (int i = 0; i < 4; ++i) turned = turnedUpright(quarterTurned(turned));
  EXPECT_EQ(likenessOf(source, {}, turned), identical);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, JpegKindTest,
    testing::Values(
        Kind{.name = "Common", .settings = {"-sampling-factor", "2x2"}},
        Kind{.name = "Full", .settings = {"-sampling-factor", "1x1"}},
        Kind{.name = "HalfAcross", .settings = {"-sampling-factor", "2x1"}},
        Kind{.name = "HalfDown", .settings = {"-sampling-factor", "1x2"}},
        Kind{.name = "QuarterAcross", .settings = {"-sampling-factor", "4x1"}},
        Kind{.name = "Odd", .settings = {"-sampling-factor", "3x1"}},
        Kind{.name = "Grey", .settings = {"-colorspace", "Gray"}},
        Kind{.name = "GreySampled", .settings = {"-colorspace", "Gray", "-sampling-factor", "2x2"}},
        Kind{.name = "Progressive", .settings = {"-interlace", "JPEG", "-sampling-factor", "2x2"}},
        Kind{.name = "Cmyk", .settings = {"-colorspace", "CMYK", "-sampling-factor", "1x1"}}),
    [](const auto& test) { return test.param.name; });

/// Red, green and blue as components of their own, which libjpeg tells by their names.
Bytes rgbJpeg(const PixelSize& size) {
  const Bytes pixels = samplePixels(static_cast<int>(size.width), static_cast<int>(size.height));
  std::vector<Raster> planes(3, Raster(size.width, size.height, 1));
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const auto pixel = static_cast<std::int64_t>(i / 3);
    planes[i % 3].row(pixel / size.width)[pixel % size.width] = pixels[i];
  }
  JpegPlanes picture{.format = {.colorSpace = JCS_RGB, .components = {{.id = 'R'}, {.id = 'G'}, {.id = 'B'}}},
                     .size = size,
                     .planes = std::move(planes)};
  constexpr int quality = 95;
  return encodeJpeg(picture, quality);
}

TEST(JpegRewrite, KeepsRedGreenAndBlueApart) {
  const TemporaryFolder folder;
  const Bytes source = rgbJpeg({202, 146});
  const Bytes result = scaled(source, {101, 73});
  const Picture expected =
      pictureOf(writeFile(folder / "source.jpg", source), {"-filter", "Lanczos", "-resize", "101x73!"});
  EXPECT_GE(likeness(expected, pictureOf(writeFile(folder / "result.jpg", result))), alikeWhenReencoded);
}

TEST(JpegRewrite, KeepsEveryByteOfPixelsThatStayAsTheyAre) {
  const Bytes source = jpegPhoto({.width = 200, .height = 120, .orientation = 6, .thumbnail = true});
  EXPECT_EQ(rewrittenAsItIs(source), source);
  EXPECT_EQ(scaled(source, {200, 120}), source);
}

TEST(JpegRewrite, RefusesSizesThatItsPixelsDoNotFill) {
  const Bytes photo = jpegPhoto({.width = 64, .height = 48, .exif = false});
  ASSERT_TRUE(rewritten(withFrameSize(photo, 64, 48), toSize({32, 24})));
  for (const auto& [width, height] :
       {std::pair{60'000U, 60'000U}, {0U, 48U}, {64U, 0U}, {640U, 480U}, {30'000U, 30'000U}}) {
    EXPECT_FALSE(rewritten(withFrameSize(photo, width, height), toSize({32, 24}))) << width << "x" << height;
    EXPECT_FALSE(rewritten(withFrameSize(photo, width, height), asItIs)) << width << "x" << height;
  }
}

TEST(JpegRewrite, SaysThatABombHasTooManyPixels) {
  const Bytes bomb = withFrameSize(jpegPhoto({.width = 64, .height = 48, .exif = false}), 60'000, 60'000);
  EXPECT_THAT(rewritten(bomb, toSize({32, 24})).error().reason, HasSubstr("too many pixels"));
}

TEST(JpegRewrite, CompressesWhatItScalesAtQuality90) {
  const TemporaryFolder folder;
  const Path small = writeFile(folder / "small.jpg", scaled(jpegPhoto({}), {64, 48}));
  EXPECT_EQ(describe(small, "%Q"), "90");
}

TEST(JpegRewrite, ScalesALineOfPixels) {
  const Bytes tall = jpegPhoto({.width = 1, .height = 65'500, .orientation = 8});
  EXPECT_EQ(test::sizeOf(scaled(tall, {1, 720}))->stored, (PixelSize{1, 720}));
  EXPECT_EQ(test::sizeOf(turnedUpright(tall))->stored, (PixelSize{65'500, 1}));
}

TEST(JpegRewrite, RefusesFilesOfVeryManyScans) {
  const Bytes photo = jpegPhoto({.width = 64, .height = 48, .exif = false, .progressive = true});
  const Bytes startOfScan{0xFF, 0xDA};
  const auto scan = std::ranges::search(photo, startOfScan).begin() - photo.begin();
  Bytes bomb(photo.begin(), photo.begin() + scan);
  for (int i = 0; i < 101; ++i) bomb.insert(bomb.end(), photo.begin() + scan, photo.end() - 2);
  bomb.insert(bomb.end(), {0xFF, 0xD9});
  EXPECT_THAT(rewritten(bomb, toSize({32, 24})).error().reason, HasSubstr("scans"));
}

}  // namespace
}  // namespace kestrova::imaging
