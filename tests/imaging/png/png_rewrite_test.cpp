#include "imaging/exif/exif_patch.h"
#include "imaging/photo_rewrite.h"
#include "imaging/png/png_chunks.h"
#include "support/external_tool.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::HasSubstr;

constexpr double alikeWhenScaled = 40;  ///< decibels, by another program's Lanczos filter

struct Kind {
  std::string name;
  std::vector<std::string> settings;  ///< for ImageMagick
  std::string scaledKind;             ///< bit depth and colour type of the scaled result
};

void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }

class PngKindTest : public testing::TestWithParam<Kind> {
 protected:
  Bytes made() {
    const Path source =
        writeFile(folder_ / "sample.png", pngPhoto({.width = 203, .height = 141, .exif = false}));
    std::vector<std::string> arguments{source.native()};
    arguments.insert(arguments.end(), GetParam().settings.begin(), GetParam().settings.end());
    arguments.push_back("PNG:" + (folder_ / "made.png").native());
    EXPECT_EQ(runTool("convert", arguments).status, 0);
    return bytesOf(folder_ / "made.png");
  }
  std::string kindOf(const Bytes& png) {
    const Path path = writeFile(folder_ / "kind.png", png);
    return runTool("exiftool", {"-s3", "-p", "$BitDepth $ColorType $Interlace", path.native()}).output;
  }
  Picture picture(const Bytes& png, const std::vector<std::string>& operations = {}) {
    return pictureOf(writeFile(folder_ / "picture.png", png), operations, true);
  }
  TemporaryFolder folder_;
};

TEST_P(PngKindTest, KeepsItsLookWhenScaled) {
  const Bytes source = made();
  const Bytes result = scaled(source, {101, 70});
  EXPECT_THAT(kindOf(result), HasSubstr(GetParam().scaledKind));
  // Seen on a background: the colour of fully transparent pixels does not matter.
  const auto seen = picture(
      source, {"-filter", "Lanczos", "-resize", "101x70!", "-background", "orange", "-alpha", "remove"});
  EXPECT_GE(likeness(seen, picture(result, {"-background", "orange", "-alpha", "remove"})), alikeWhenScaled);
}

TEST_P(PngKindTest, KeepsEverySampleWhenTurned) {
  const Bytes source = made();
  const Bytes oriented = withChunks(source, {pngChunk("eXIf", exifBlock({.orientation = 8}).encode())});
  const Bytes result = turnedUpright(oriented);
  EXPECT_EQ(kindOf(result), kindOf(source));
  EXPECT_EQ(likeness(picture(source, {"-rotate", "-90"}), picture(result)), identical);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PngKindTest,
    testing::Values(
        Kind{.name = "Rgb", .settings = {"-define", "png:color-type=2"}, .scaledKind = "8 RGB"},
        Kind{.name = "Rgb16",
             .settings = {"-depth", "16", "-define", "png:color-type=2", "-define", "png:bit-depth=16"},
             .scaledKind = "16 RGB"},
        Kind{.name = "Grey",
             .settings = {"-colorspace", "Gray", "-define", "png:color-type=0"},
             .scaledKind = "8 Grayscale"},
        Kind{
            .name = "Grey16",
            .settings = {"-colorspace", "Gray", "-define", "png:color-type=0", "-define", "png:bit-depth=16"},
            .scaledKind = "16 Grayscale"},
        Kind{.name = "OneBit",
             .settings = {"-colorspace", "Gray", "-monochrome", "-define", "png:color-type=0", "-define",
                          "png:bit-depth=1"},
             .scaledKind = "8 Grayscale"},
        Kind{.name = "FourBits",
             .settings = {"-colorspace", "Gray", "-depth", "4", "-define", "png:color-type=0", "-define",
                          "png:bit-depth=4"},
             .scaledKind = "8 Grayscale"},
        Kind{.name = "Palette",
             .settings = {"-colors", "100", "-define", "png:color-type=3"},
             .scaledKind = "8 RGB"},
        Kind{.name = "SmallPalette",
             .settings = {"-colors", "12", "-define", "png:color-type=3", "-define", "png:bit-depth=4"},
             .scaledKind = "8 RGB"},
        Kind{.name = "Alpha",
             .settings = {"-alpha", "set", "-region", "90x80+40+20", "-alpha", "transparent", "+region"},
             .scaledKind = "8 RGB with Alpha"},
        Kind{.name = "Alpha16",
             .settings = {"-depth", "16", "-alpha", "set", "-channel", "A", "-evaluate", "multiply", "0.3",
                          "-define", "png:color-type=6", "-define", "png:bit-depth=16"},
             .scaledKind = "16 RGB with Alpha"},
        Kind{.name = "GreyAlpha",
             .settings = {"-colorspace", "Gray", "-alpha", "set", "-channel", "A", "-evaluate", "multiply",
                          "0.6", "-define", "png:color-type=4"},
             .scaledKind = "8 Grayscale with Alpha"},
        Kind{.name = "Interlaced",
             .settings = {"-interlace", "PNG", "-define", "png:color-type=2"},
             .scaledKind = "8 RGB Adam7"}),
    [](const auto& test) { return test.param.name; });

TEST(PngRewrite, MakesATransparentColourOpacity) {
  const Bytes transparentRed = pngChunk("tRNS", Bytes{0, 200, 0, 0, 0, 0});
  const Bytes source = withChunks(pngPhoto({.width = 64, .height = 48, .exif = false}), {transparentRed});
  const Bytes result = scaled(source, {32, 24});
  EXPECT_FALSE(contains(result, transparentRed));
  EXPECT_EQ(result[25], 6);  // colour type: red, green, blue, opacity
}

TEST(PngRewrite, PassesChunksThroughByteForByte) {
  const std::vector<Bytes> chunks{pngChunk("tEXt", Bytes{'K', 0, 'v'}),
                                  pngChunk("pHYs", Bytes{0, 0, 1, 0, 0, 0, 1, 0, 1}),
                                  pngChunk("gAMA", Bytes{0, 0, 0xB1, 0x8F}), pngChunk("iCCP", Bytes(50, 1)),
                                  pngChunk("prVt", Bytes(300, 5))};
  const Bytes source = withChunks(pngPhoto({.width = 64, .height = 48, .orientation = 6}), chunks);
  for (const RewriteRequest& request : {toSize({32, 24}), toUpright}) {
    const Bytes result = mustRewrite(source, request);
    for (const auto& chunk : chunks) EXPECT_TRUE(contains(result, chunk));
  }
}

TEST(PngRewrite, SetsTheOrientationInXmpWhenItTurns) {
  const auto packet = [](const std::string& orientation) {
    const std::string text =
        std::string("XML:com.adobe.xmp\0\0\0\0\0", 22) + "<x tiff:Orientation=\"" + orientation + "\"/>";
    return pngChunk("iTXt", Bytes(text.begin(), text.end()));
  };
  const Bytes source = withChunks(pngPhoto({.width = 64, .height = 48, .orientation = 6}), {packet("6")});
  EXPECT_TRUE(contains(turnedUpright(source), packet("1")));
  EXPECT_TRUE(contains(scaled(source, {32, 24}), packet("6")));
}

TEST(PngRewrite, TurnsThePreviewOfItsFirstExifChunkOnly) {
  const Bytes block = exifBlock({.orientation = 6, .thumbnail = true}).encode();
  const Bytes source = withChunks(pngPhoto({.width = 64, .height = 48, .exif = false}),
                                  {pngChunk("eXIf", block), pngChunk("eXIf", block)});
  const Bytes result = turnedUpright(source);
  std::vector<bool> hasPreview;
  visitPngChunks(result, [&](const PngChunk& chunk) {
    if (chunk.type == "eXIf") hasPreview.push_back(!exifPreview(chunk.data).empty());
  });
  EXPECT_EQ(hasPreview, (std::vector<bool>{true, false}));
}

// Work that grows with the square of the length would never end here.
TEST(PngRewrite, WithstandsMegabytesOfHostileXmp) {
  for (const std::string_view part : {"/9j/&", "tiff:ImageWidth=\"9\"", "tiff:Orientation="}) {
    std::string text("XML:com.adobe.xmp\0\0\0\0\0", 22);
    while (text.size() < 4'000'000) text += part;
    const Bytes chunk = pngChunk("iTXt", Bytes(text.begin(), text.end()));
    const Bytes source = withChunks(pngPhoto({.width = 64, .height = 48, .orientation = 6}), {chunk});
    EXPECT_EQ(sizeOf(turnedUpright(source))->stored, (PixelSize{48, 64})) << part;
  }
}

TEST(PngRewrite, KeepsEveryByteOfPixelsThatStayAsTheyAre) {
  const Bytes source = pngPhoto({.width = 64, .height = 48, .orientation = 6});
  EXPECT_EQ(rewrittenAsItIs(source), source);
}

TEST(PngRewrite, LeavesAnimationsAsTheyAre) {
  const Bytes source = withChunks(pngPhoto({.width = 64, .height = 48, .orientation = 6}),
                                  {pngChunk("acTL", Bytes{0, 0, 0, 2, 0, 0, 0, 0})});
  EXPECT_FALSE(rewritten(source, toSize({32, 24})));
  EXPECT_FALSE(rewritten(source, toUpright));
  EXPECT_EQ(rewrittenAsItIs(source), source);
}

TEST(PngRewrite, RefusesSizesThatItsPixelsDoNotFill) {
  const Bytes photo = pngPhoto({.width = 64, .height = 48, .exif = false});
  for (const auto& [width, height] : {std::pair<unsigned, unsigned>{60'000, 60'000},
                                      {0, 48},
                                      {64, 480},
                                      {2'000'000'000, 1},
                                      {900'000'000, 1}}) {
    const Bytes bomb = withHeaderSize(photo, width, height);
    EXPECT_FALSE(rewritten(bomb, toSize({32, 24}))) << width << "x" << height;
  }
}

}  // namespace
}  // namespace kestrova::imaging
