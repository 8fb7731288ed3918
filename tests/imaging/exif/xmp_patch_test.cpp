#include "imaging/exif/xmp_patch.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

const MetadataEdit resized{.exif = {.pixelSize = PixelSize{1280, 70}}, .turnPreview = {}};

MetadataEdit turned() {
  MetadataEdit edit = resized;
  edit.turnPreview = [](auto) { return std::size_t{0}; };
  return edit;
}

std::string edited(const std::string& packet, const MetadataEdit& edit = resized) {
  Bytes bytes(packet.begin(), packet.end());
  editXmp(bytes, edit);
  return {bytes.begin(), bytes.end()};
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(XmpPatch, RestatesAttributesAndElementsWhateverTheirLength) {
  EXPECT_EQ(edited("<a tiff:ImageWidth=\"9\" tiff:ImageLength='40000' b='1'/>"),
            "<a tiff:ImageWidth=\"1280\" tiff:ImageLength='70' b='1'/>");
  EXPECT_EQ(edited("<exif:PixelXDimension>9</exif:PixelXDimension><exif:PixelYDimension> 8 </x>"),
            "<exif:PixelXDimension>1280</exif:PixelXDimension><exif:PixelYDimension> 70 </x>");
}

TEST(XmpPatch, RestatesTheOrientationOnceThePixelsWereTurned) {
  EXPECT_EQ(edited("tiff:Orientation=\"6\"", turned()), "tiff:Orientation=\"1\"");
  EXPECT_EQ(edited("tiff:Orientation=\"6\"", resized), "tiff:Orientation=\"6\"");
}

TEST(XmpPatch, LeavesWhatIsNotAWholeNumberOfAPropertyItKnows) {
  for (const std::string text :
       {"", ":", "tiff:", "tiff:ImageWidth", "tiff:ImageWidth=", "tiff:ImageWidth=\"", "tiff:ImageWidth=\"9",
        "tiff:ImageWidth=\"nine\"", "tiff:ImageWidth=\"9.5\"", "tiff:ImageWidth=\"9/1\"",
        "tiff:ImageWidth9\"", "tiff:ImageWidths=\"9\"", "TIFF:ImageWidth=\"9\"", "tiff:XResolution=\"9\"",
        "iff:ImageWidth=\"9\""}) {
    EXPECT_EQ(edited(text, turned()), text);
  }
}

// Work that grows with the square of the length would never end here.
TEST(XmpPatch, GoesThroughMegabytesOfTheSameInOnePass) {
  constexpr std::size_t size = 4'000'000;
  const std::string property = "tiff:ImageWidth=\"9\"";
  const std::size_t times = size / property.size();
  EXPECT_TRUE(edited(repeated(property, times)) == repeated("tiff:ImageWidth=\"1280\"", times));
  for (const std::string part :
       {"/9j/&", "tiff:ImageWidth", "tiff:ImageWidth=", ":", "tiff:ImageWidth=\"9,", " ", "9"}) {
    const std::string packet = "tiff:ImageWidth=" + repeated(part, size / part.size());
    EXPECT_TRUE(edited(packet, turned()) == packet) << part;
  }
}

}  // namespace
}  // namespace kestrova::imaging
