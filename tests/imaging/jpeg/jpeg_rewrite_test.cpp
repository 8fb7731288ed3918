#include "imaging/jpeg/jpeg_rewrite.h"

#include "imaging/jpeg/jpeg_encoder.h"
#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::HasSubstr;
using testing::MatchesRegex;

// Likenesses in decibels.
constexpr double alikeWhenScaled = 38;  ///< by another program's Lanczos filter
constexpr double alikeWhenReencoded = 30;
constexpr double differentByRounding = 45;

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

Bytes named(std::string_view name, std::size_t size, std::uint8_t filler) {
  Bytes payload(name.begin(), name.end());
  payload.resize(name.size() + size, filler);
  return payload;
}

/// A photo that says it has to be turned by a quarter.
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
    testing::Values(Kind{"Common", {"-sampling-factor", "2x2"}}, Kind{"Full", {"-sampling-factor", "1x1"}},
                    Kind{"HalfAcross", {"-sampling-factor", "2x1"}},
                    Kind{"HalfDown", {"-sampling-factor", "1x2"}},
                    Kind{"QuarterAcross", {"-sampling-factor", "4x1"}},
                    Kind{"Odd", {"-sampling-factor", "3x1"}}, Kind{"Grey", {"-colorspace", "Gray"}},
                    Kind{"GreySampled", {"-colorspace", "Gray", "-sampling-factor", "2x2"}},
                    Kind{"Progressive", {"-interlace", "JPEG", "-sampling-factor", "2x2"}},
                    Kind{"Cmyk", {"-colorspace", "CMYK", "-sampling-factor", "1x1"}}),
    [](const auto& test) { return test.param.name; });

/// Red, green and blue as components of their own, which libjpeg tells by their names.
Bytes rgbJpeg(const PixelSize& size) {
  const Bytes pixels = samplePixels(static_cast<int>(size.width), static_cast<int>(size.height));
  std::vector<Raster> planes(3, Raster(size.width, size.height, 1));
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const auto pixel = static_cast<std::int64_t>(i / 3);
    planes[i % 3].row(pixel / size.width)[pixel % size.width] = pixels[i];
  }
  return encodeJpeg({JCS_RGB, false, {{'R', 1, 1}, {'G', 1, 1}, {'B', 1, 1}}}, size, planes, 95);
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

TEST(JpegRewrite, PassesSegmentsThroughByteForByte) {
  const std::vector<Bytes> segments{
      jpegSegment(0xE2, named(std::string_view("ICC_PROFILE\0\1\2", 14), 60'000, 3)),
      jpegSegment(0xE2, named(std::string_view("ICC_PROFILE\0\2\2", 14), 60'000, 4)),
      jpegSegment(0xE1, named(std::string_view("http://ns.adobe.com/xmp/extension/\0", 35), 65'000, 'x')),
      jpegSegment(0xED, named(std::string_view("Photoshop 3.0\0", 14), 20, 0)),
      jpegSegment(0xEF, named("anything", 3, 9)),
      jpegSegment(0xFE, named("a comment", 0, 0)),
  };
  const Bytes source = withSegments(jpegPhoto({.width = 64, .height = 48, .orientation = 6}), segments);
  for (const RewriteRequest& request : {toSize({32, 24}), toUpright}) {
    const Bytes result = mustRewrite(source, request);
    for (const auto& segment : segments) EXPECT_TRUE(contains(result, segment));
  }
}

TEST(JpegRewrite, CarriesWhatFollowsThePicture) {
  Bytes source = jpegPhoto({.width = 64, .height = 48});
  const Bytes film = videoFile(3000);
  source.insert(source.end(), film.begin(), film.end());
  const Bytes result = scaled(source, {32, 24});
  EXPECT_TRUE(std::ranges::equal(film, std::span(result).last(film.size())));
}

TEST(JpegRewrite, SetsTheOrientationInXmpWhenItTurns) {
  const std::string_view name("http://ns.adobe.com/xap/1.0/\0", 29);
  for (const std::string text :
       {"<x tiff:Orientation=\"6\" y=\"6\"/>", "<tiff:Orientation>6</tiff:Orientation><a>6</a>"}) {
    const Bytes source = withSegments(jpegPhoto({.width = 64, .height = 48, .orientation = 6}),
                                      {jpegSegment(0xE1, named(std::string(name) + text, 0, 0))});
    std::string expected = text;
    expected[expected.find('6')] = '1';
    const auto asBytes = [](const std::string& string) { return Bytes(string.begin(), string.end()); };
    EXPECT_TRUE(contains(turnedUpright(source), asBytes(expected)));
    EXPECT_TRUE(contains(scaled(source, {32, 24}), asBytes(text)));
  }
}

/// JPEGs in the metadata that nothing is known about.
class ForeignJpegTest : public testing::Test {
 protected:
  Bytes turned(const std::vector<Bytes>& segments, const Bytes& trailer = {}) {
    const Bytes photo = jpegPhoto({.width = 64, .height = 48, .orientation = 6});
    return turnedUpright(joined({withSegments(photo, segments), trailer}));
  }

  const Bytes jpeg_ = jpegPhoto({.width = 93, .height = 60, .seed = 3, .exif = false});
};

TEST_F(ForeignJpegTest, PassesThroughInASegmentThatNobodyKnows) {
  const Bytes segment = jpegSegment(0xE4, joined({named("screen shot", 0, 0), jpeg_}));
  EXPECT_TRUE(contains(turned({segment}), segment));
}

TEST_F(ForeignJpegTest, PassesThroughInFlashPixStreams) {
  const Bytes header = named(std::string_view("FPXR\0\0\2", 7), 6, 7);
  const Bytes first = jpegSegment(0xE2, joined({header, {jpeg_.begin(), jpeg_.begin() + 300}}));
  const Bytes second = jpegSegment(0xE2, joined({header, {jpeg_.begin() + 300, jpeg_.end()}}));
  EXPECT_TRUE(contains(turned({first, second}), joined({first, second})));
}

TEST_F(ForeignJpegTest, PassesThroughInPhotoshopsResources) {
  const Bytes name = named(std::string_view("Photoshop 3.0\0", 14), 0, 0);
  const Bytes resource{'8', 'B', 'I', 'M', 4, 0x0C, 0, 0, 0, 0, 0, 28};
  const Bytes segment = jpegSegment(0xED, joined({name, resource, Bytes(28, 0), jpeg_}));
  EXPECT_TRUE(contains(turned({segment}), segment));
}

TEST_F(ForeignJpegTest, PassesThroughInBase64InXmp) {
  const QByteArray digits =
      QByteArray(reinterpret_cast<const char*>(jpeg_.data()), static_cast<qsizetype>(jpeg_.size()))
          .toBase64();
  const std::string name("http://ns.adobe.com/xap/1.0/\0", 29);
  const Bytes segment =
      jpegSegment(0xE1, named(name + "<xmpGImg:image>" + digits.toStdString() + "</xmpGImg:image>", 0, 0));
  EXPECT_TRUE(contains(turned({segment}), segment));
}

TEST_F(ForeignJpegTest, PassesThroughAfterThePictureWhenNoIndexNamesIt) {
  const Bytes trailer = joined({Bytes(8, 0), jpeg_, videoFile(3000), jpeg_});
  const Bytes result = turned({}, trailer);
  EXPECT_TRUE(std::equal(trailer.rbegin(), trailer.rend(), result.rbegin()));
}

TEST(JpegRewrite, KeepsJfifThumbnailsWhenItTurns) {
  const Bytes jfif = joined({named(std::string_view("JFIF\0\1\1\0\0\1\0\1\2\2", 14), 2 * 2 * 3, 5)});
  const Bytes extension = named(std::string_view("JFXX\0\x13\1\1", 8), 3, 9);
  const std::vector<Bytes> segments{jpegSegment(0xE0, jfif), jpegSegment(0xE0, extension)};
  const Bytes source = withSegments(jpegPhoto({.width = 64, .height = 48, .orientation = 6}), segments);
  const Bytes result = turnedUpright(source);
  for (const auto& segment : segments) EXPECT_TRUE(contains(result, segment));
}

class PreviewTest : public testing::Test {
 protected:
  const Reorientation quarterTurn_ = reorientationFrom(6);
  const Bytes preview_ = jpegPhoto({.width = 93, .height = 60, .seed = 3, .exif = false});
  TemporaryFolder folder_;
};

TEST_F(PreviewTest, IsTurnedEvenWhereItsBytesHaveNoRoomForIt) {
  const Path path = writeFile(folder_ / "small.png", pngPhoto({.width = 93, .height = 61, .exif = false}));
  ASSERT_EQ(runTool("convert", {path.native(), "-quality", "12", "-define", "jpeg:optimize-coding=true",
                                "-interlace", "JPEG", (folder_ / "small.jpg").native()})
                .status,
            0);
  const Bytes source = bytesOf(folder_ / "small.jpg");
  Bytes small = source;
  const std::size_t length = turnJpegWithin(small, quarterTurn_, 1'000'000);
  EXPECT_GT(length, 0U);
  EXPECT_LE(length, source.size());
  EXPECT_EQ(outlineJpeg(small).imageEnd, length);
  EXPECT_GT(test::sizeOf(small)->stored.height, test::sizeOf(small)->stored.width);
}

TEST_F(PreviewTest, IsNotTurnedWithMorePixelsThanItMayHave) {
  Bytes preview = preview_;
  EXPECT_EQ(turnJpegWithin(preview, quarterTurn_, 93 * 60 - 1), 0U);
  EXPECT_EQ(preview, preview_);
  EXPECT_GT(turnJpegWithin(preview, quarterTurn_, 93 * 60), 0U);
}

TEST_F(PreviewTest, MayHaveAsManyPixelsAsItsPhotoAndAtLeastAMillion) {
  const Bytes million = jpegPhoto({.width = 1000, .height = 1000, .exif = false});
  const Bytes more = jpegPhoto({.width = 1008, .height = 1000, .exif = false});
  const auto isTurned = [](Bytes preview, const PixelSize& photo) {
    return previewTurner({photo, photo, reorientationFrom(6), true})(preview) > 0;
  };
  EXPECT_TRUE(isTurned(million, {10, 10}));
  EXPECT_FALSE(isTurned(more, {10, 10}));
  EXPECT_TRUE(isTurned(more, {1008, 1000}));
}

TEST_F(PreviewTest, IsLeftAloneWhenItsPhotoIsNotTurned) {
  EXPECT_FALSE(previewTurner({{64, 48}, {32, 24}, Reorientation{}, true}));
}

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

TEST_F(MultiPictureTest, FindsItsSecondPictureBehindTheScaledFirst) {
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
  std::mt19937 random(17);
  int written = 0;
  for (int i = 0; i < 1000; ++i) {
    Bytes file = source;
    for (auto changes = 1 + random() % 5; changes > 0; --changes) {
      const std::size_t range = random() % 2 == 0 ? 260 : file.size();
      file[random() % range] = static_cast<std::uint8_t>(random());
    }
    const auto result = rewritten(file, {PixelSize{24, 32}, random() % 2 == 0});
    if (!result) continue;
    ++written;
    EXPECT_TRUE(rewritten(*result, asItIs)) << "mutation " << i;
  }
  EXPECT_GT(written, 100);
}

TEST(JpegRewrite, TurnsDownSizesThatItsPixelsDoNotFill) {
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

TEST(JpegRewrite, ScalesALineOfPixels) {
  const Bytes tall = jpegPhoto({.width = 1, .height = 65'500, .orientation = 8});
  EXPECT_EQ(test::sizeOf(scaled(tall, {1, 720}))->stored, (PixelSize{1, 720}));
  EXPECT_EQ(test::sizeOf(turnedUpright(tall))->stored, (PixelSize{65'500, 1}));
}

TEST(JpegRewrite, TurnsDownFilesOfVeryManyScans) {
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
