#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/photo_tags.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::IsEmpty;

// Likenesses in decibels; scaled means by another program's Lanczos filter.
constexpr double alikeWhenScaled = 40;
constexpr double alikeWhenScaledInAnyKind = 33;  ///< palettes and JPEG in a TIFF, too
constexpr double alikeWhenReencoded = 30;

struct Kind {
  std::string name;
  std::vector<std::string> settings;  ///< for ImageMagick
  std::string scaledKind;             ///< bits, samples and compression of the scaled result
};

void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }

class TiffTest : public testing::Test {
 protected:
  Bytes made(const std::vector<std::string>& settings) {
    const Path source =
        writeFile(folder_ / "sample.png", pngPhoto({.width = 203, .height = 141, .exif = false}));
    std::vector<std::string> arguments{source.native()};
    arguments.insert(arguments.end(), settings.begin(), settings.end());
    arguments.push_back("TIFF:" + (folder_ / "made.tif").native());
    EXPECT_EQ(runTool("convert", arguments).status, 0);
    return bytesOf(folder_ / "made.tif");
  }
  /// The same file with an orientation that needs a clockwise quarter turn.
  Bytes quarterTurned(const Bytes& tiff) {
    const Path path = writeFile(folder_ / "turn.tif", tiff);
    EXPECT_EQ(
        runTool("exiftool", {"-q", "-overwrite_original", "-n", "-Orientation=6", path.native()}).status, 0);
    return bytesOf(path);
  }
  std::string kindOf(const Bytes& tiff) {
    const Path path = writeFile(folder_ / "kind.tif", tiff);
    return runTool("exiftool", {"-s3", "-p", "$BitsPerSample, $SamplesPerPixel, $Compression", path.native()})
        .output;
  }
  Picture picture(const Bytes& tiff, const std::vector<std::string>& operations = {}) {
    return pictureOf(writeFile(folder_ / "picture.tif", tiff), operations);
  }
  TemporaryFolder folder_;
};

class TiffKindTest : public TiffTest, public testing::WithParamInterface<Kind> {};

TEST_P(TiffKindTest, KeepsItsLookWhenScaled) {
  const Bytes source = made(GetParam().settings);
  const Bytes result = scaled(source, {101, 70});
  EXPECT_EQ(kindOf(result), GetParam().scaledKind + "\n");
  EXPECT_GE(likeness(picture(source, {"-filter", "Lanczos", "-resize", "101x70!"}), picture(result)),
            alikeWhenScaledInAnyKind);
}

TEST_P(TiffKindTest, KeepsItsLookWhenTurned) {
  const Bytes source = made(GetParam().settings);
  const Bytes result = turnedUpright(quarterTurned(source));
  EXPECT_EQ(kindOf(result), kindOf(source));
  const Path path = writeFile(folder_ / "result.tif", result);
  EXPECT_THAT(unexpectedChanges(tagsOf(folder_ / "turn.tif"), tagsOf(path)), IsEmpty());
  const bool isLossless = GetParam().name != "Jpeg";
  EXPECT_GE(likeness(picture(source, {"+repage", "-orient", "RightTop", "-auto-orient"}), picture(result)),
            isLossless ? identical : alikeWhenReencoded);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, TiffKindTest,
    testing::Values(
        Kind{.name = "Plain", .settings = {"-compress", "None"}, .scaledKind = "8 8 8, 3, Uncompressed"},
        Kind{.name = "Lzw", .settings = {"-compress", "LZW"}, .scaledKind = "8 8 8, 3, LZW"},
        Kind{.name = "Deflate16",
             .settings = {"-depth", "16", "-evaluate", "add", "0.3%", "-compress", "Zip"},
             .scaledKind = "16 16 16, 3, Adobe Deflate"},
        Kind{.name = "BigEndian",
             .settings = {"-endian", "MSB", "-depth", "16", "-evaluate", "add", "0.3%", "-compress", "LZW"},
             .scaledKind = "16 16 16, 3, LZW"},
        Kind{.name = "Jpeg",
             .settings = {"-compress", "JPEG", "-quality", "95"},
             .scaledKind = "8 8 8, 3, JPEG"},
        Kind{.name = "Grey",
             .settings = {"-colorspace", "Gray", "-compress", "LZW"},
             .scaledKind = "8, 1, LZW"},
        Kind{.name = "OneBit", .settings = {"-monochrome", "-compress", "Group4"}, .scaledKind = "8, 1, LZW"},
        Kind{.name = "OneBitPlain",
             .settings = {"-monochrome", "-compress", "None"},
             .scaledKind = "8, 1, Uncompressed"},
        Kind{.name = "Palette",
             .settings = {"-colors", "90", "-type", "Palette", "-compress", "LZW"},
             .scaledKind = "8 8 8, 3, LZW"},
        Kind{.name = "Alpha",
             .settings = {"-alpha", "set", "-channel", "A", "-evaluate", "set", "60%", "-compress", "LZW"},
             .scaledKind = "8 8 8 8, 4, LZW"},
        Kind{.name = "Cmyk",
             .settings = {"-colorspace", "CMYK", "-compress", "LZW"},
             .scaledKind = "8 8 8 8, 4, LZW"},
        Kind{.name = "Planar",
             .settings = {"-interlace", "Plane", "-compress", "LZW"},
             .scaledKind = "8 8 8, 3, LZW"},
        Kind{.name = "Tiled",
             .settings = {"-define", "tiff:tile-geometry=64x48", "-compress", "LZW"},
             .scaledKind = "8 8 8, 3, LZW"},
        Kind{.name = "TiledPlanar",
             .settings = {"-define", "tiff:tile-geometry=32x32", "-interlace", "Plane", "-compress", "Zip"},
             .scaledKind = "8 8 8, 3, Adobe Deflate"}),
    [](const auto& test) { return test.param.name; });

TEST_F(TiffTest, KeepsEveryByteOfPixelsThatStayAsTheyAre) {
  const Bytes source = tiffPhoto({.width = 64, .height = 48, .orientation = 6});
  EXPECT_EQ(rewrittenAsItIs(source), source);
}

TEST_F(TiffTest, KeepsColourProfileAndResolution) {
  const Path path =
      writeFile(folder_ / "profile.tif", made({"-density", "203x196", "-units", "PixelsPerInch"}));
  Bytes profile(600, 0);
  profile[2] = 2;
  profile[3] = 88;
  const std::string_view kind = "mntrRGB XYZ ";
  const std::string_view signature = "acsp";
  std::ranges::copy(kind, profile.begin() + 12);
  std::ranges::copy(signature, profile.begin() + 36);
  const Path profilePath = writeFile(folder_ / "profile.icc", profile);
  const ToolRun run = runTool(
      "exiftool", {"-q", "-overwrite_original", "-icc_profile<=" + profilePath.native(), path.native()});
  ASSERT_EQ(run.status, 0) << run.errors;
  const Tags before = tagsOf(path);
  const Path result = writeFile(folder_ / "result.tif", scaled(bytesOf(path), {101, 70}));
  EXPECT_THAT(unexpectedChanges(before, tagsOf(result)), IsEmpty());
  EXPECT_EQ(runTool("exiftool", {"-b", "-icc_profile", result.native()}).output.size(), profile.size());
}

/// One of Photoshop's image resources.
Bytes imageResource(std::uint8_t number) {
  Bytes block(52, number);
  const Bytes header{'8', 'B', 'I', 'M', 4, number, 0, 0, 0, 0, 0, 40};
  std::ranges::copy(header, block.begin());
  return block;
}

TEST_F(TiffTest, KeepsPhotoshopsPreviewByteForByte) {
  const Bytes preview = imageResource(0x0C);
  const Bytes other = imageResource(0x06);
  TiffBlock file;
  claimSize(file, 20, 10);
  file.image.push_back(tiffShort(0x0112, 6));
  file.image.push_back({0x8649, TiffType::byte, {preview.begin(), preview.end()}});
  file.image.back().values.insert(file.image.back().values.end(), other.begin(), other.end());
  const Bytes source = file.encode();
  EXPECT_TRUE(contains(turnedUpright(source), joined({preview, other})));
  EXPECT_TRUE(contains(scaled(source, {10, 5}), joined({preview, other})));
}

TEST_F(TiffTest, KeepsAnXmpPacketThatIsBrokenByteForByte) {
  const std::string_view text = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF broken";
  const Bytes packet(text.begin(), text.end());
  TiffBlock file;
  claimSize(file, 20, 10);
  file.image.push_back(tiffShort(0x0112, 6));
  file.image.push_back({0x02BC, TiffType::byte, {packet.begin(), packet.end()}});
  const Bytes source = file.encode();
  EXPECT_TRUE(contains(turnedUpright(source), packet));
  EXPECT_TRUE(contains(scaled(source, {10, 5}), packet));
}

TEST_F(TiffTest, HasItsFirstPageAloneWhenItsPixelsChange) {
  const Bytes pages = made({"(", "+clone", "-negate", ")"});
  const Bytes result = scaled(pages, {101, 70});
  EXPECT_EQ(runTool("identify", {"-format", "%n", writeFile(folder_ / "pages.tif", pages).native()}).output,
            "22");  // once for each page
  EXPECT_EQ(runTool("identify", {"-format", "%n", writeFile(folder_ / "result.tif", result).native()}).output,
            "1");
  EXPECT_GE(likeness(picture(pages, {"-filter", "Lanczos", "-resize", "101x70!"}), picture(result)),
            alikeWhenScaled);
}

Bytes claimedSize(std::uint64_t width, std::uint64_t height, std::uint64_t compression) {
  TiffBlock file;
  claimSize(file, width, height, compression);
  return file.encode();
}

TEST_F(TiffTest, RefusesSizesThatItsPixelsDoNotFill) {
  ASSERT_TRUE(rewritten(claimedSize(20, 10, 1), toSize({10, 5})));
  for (const auto& [width, height] : {std::pair<std::uint64_t, std::uint64_t>{60'000, 60'000},
                                      {900'000'000, 1},
                                      {1, 65'500},
                                      {30'000, 30'000},
                                      {0, 10},
                                      {20, 0}}) {
    for (const std::uint64_t compression : {1U, 5U, 8U, 32773U}) {
      const Bytes bomb = claimedSize(width, height, compression);
      EXPECT_FALSE(rewritten(bomb, toSize({10, 5}))) << width << "x" << height << " " << compression;
      EXPECT_FALSE(rewritten(bomb, toUpright)) << width << "x" << height << " " << compression;
    }
  }
}

TEST_F(TiffTest, IsAnErrorWhereItsKindIsNotWritten) {
  EXPECT_FALSE(
      rewritten(made({"-define", "quantum:format=floating-point", "-depth", "32"}), toSize({50, 40})));
  EXPECT_FALSE(rewritten(tiffPhoto({.width = 64, .height = 48, .bigTiff = true}), toSize({32, 24})));
}

}  // namespace
}  // namespace kestrova::imaging
