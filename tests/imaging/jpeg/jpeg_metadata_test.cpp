#include "imaging/jpeg/named_payload.h"
#include "support/rewriting.h"
#include "support/sample_media.h"

#include <QByteArray>
#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

// What rewriting a JPEG does to its segments and to what follows its picture.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

TEST(JpegMetadata, PassesSegmentsThroughByteForByte) {
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

TEST(JpegMetadata, CarriesWhatFollowsThePicture) {
  Bytes source = jpegPhoto({.width = 64, .height = 48});
  const Bytes film = videoFile(3000);
  source.insert(source.end(), film.begin(), film.end());
  const Bytes result = scaled(source, {32, 24});
  EXPECT_TRUE(std::ranges::equal(film, std::span(result).last(film.size())));
}

/// A segment with this XMP packet.
Bytes xmpSegment(std::string_view packet) {
  Bytes payload = named(std::string_view("http://ns.adobe.com/xap/1.0/\0", 29), packet.size(), 0);
  std::ranges::copy(packet, payload.end() - static_cast<std::ptrdiff_t>(packet.size()));
  return jpegSegment(0xE1, payload);
}

TEST(JpegMetadata, SetsTheOrientationInXmpWhenItTurns) {
  for (const std::string_view text :
       {"<x tiff:Orientation=\"6\" y=\"6\"/>", "<tiff:Orientation>6</tiff:Orientation><a>6</a>"}) {
    const Bytes source =
        withSegments(jpegPhoto({.width = 64, .height = 48, .orientation = 6}), {xmpSegment(text)});
    std::string expected(text);
    expected[expected.find('6')] = '1';
    const auto asBytes = [](std::string_view string) { return Bytes(string.begin(), string.end()); };
    EXPECT_TRUE(contains(turnedUpright(source), asBytes(expected)));
    EXPECT_TRUE(contains(scaled(source, {32, 24}), asBytes(text)));
  }
}

TEST(JpegMetadata, KeepsJfifThumbnailsWhenItTurns) {
  const Bytes jfif = joined({named(std::string_view("JFIF\0\1\1\0\0\1\0\1\2\2", 14), 2 * 2 * 3, 5)});
  const Bytes extension = named(std::string_view("JFXX\0\x13\1\1", 8), 3, 9);
  const std::vector<Bytes> segments{jpegSegment(0xE0, jfif), jpegSegment(0xE0, extension)};
  const Bytes source = withSegments(jpegPhoto({.width = 64, .height = 48, .orientation = 6}), segments);
  const Bytes result = turnedUpright(source);
  for (const auto& segment : segments) EXPECT_TRUE(contains(result, segment));
}

/// JPEGs in unknown metadata.
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

}  // namespace
}  // namespace kestrova::imaging
