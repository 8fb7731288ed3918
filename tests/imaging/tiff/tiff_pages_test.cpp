#include "imaging/tiff/tiff_pages.h"

#include "imaging/photo_properties.h"
#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/photo_reading.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr double alikeWhenScaled = 40;  // dB, by another program's Lanczos filter

class TiffPagesTest : public testing::Test {
 protected:
  /// A TIFF with a page for each of these sizes, each with another picture.
  Bytes pagesOf(const std::vector<PixelSize>& sizes) {
    std::vector<std::string> arguments;
    for (unsigned i = 0; i < sizes.size(); ++i) {
      const SamplePhoto photo{.width = static_cast<int>(sizes[i].width),
                              .height = static_cast<int>(sizes[i].height),
                              .seed = i,
                              .exif = false};
      arguments.push_back(writeFile(folder_ / (std::to_string(i) + ".png"), pngPhoto(photo)).native());
    }
    arguments.insert(arguments.end(), {"-compress", "LZW", "TIFF:" + (folder_ / "made.tif").native()});
    EXPECT_EQ(runTool("convert", arguments).status, 0);
    return bytesOf(folder_ / "made.tif");
  }
  Bytes withTag(const Bytes& tiff, const std::string& setting) {
    const Path path = writeFile(folder_ / "tagged.tif", tiff);
    EXPECT_EQ(runTool("exiftool", {"-q", "-overwrite_original", "-n", setting, path.native()}).status, 0);
    return bytesOf(path);
  }
  /// The picture that was made for a page, after ImageMagick's operations.
  Picture page(int number, const std::vector<std::string>& operations = {}) {
    return pictureOf(folder_ / (std::to_string(number) + ".png"), operations);
  }
  Picture stored(const Bytes& tiff) { return pictureOf(writeFile(folder_ / "stored.tif", tiff)); }

  TemporaryFolder folder_;
};

RewrittenPhoto mustRewritePages(const Bytes& file, const RewriteRequest& request) {
  const auto photo = measurePhoto(file);
  const auto result = photo ? rewritePhoto(file, *photo, request) : tl::unexpected(photo.error());
  if (!result) ADD_FAILURE() << result.error().reason;
  return result.value_or(RewrittenPhoto());
}

TEST_F(TiffPagesTest, HaveTheSizeOfTheLargestSidesOfAllPages) {
  EXPECT_EQ(sizeOf(pagesOf({{30, 20}, {160, 120}}))->stored, (PixelSize{160, 120}));
  EXPECT_EQ(sizeOf(pagesOf({{160, 120}, {30, 20}}))->stored, (PixelSize{160, 120}));
  EXPECT_EQ(sizeOf(pagesOf({{200, 30}, {40, 100}}))->stored, (PixelSize{200, 100}));
}

TEST_F(TiffPagesTest, AreWrittenAsTheLargestWhenPixelsChange) {
  const Bytes source = pagesOf({{60, 40}, {320, 240}, {100, 80}});
  const RewrittenPhoto result = mustRewritePages(source, {.size = PixelSize{160, 120}});
  EXPECT_EQ(result.pagesLeftOut, 2);
  EXPECT_EQ(sizeOf(result.bytes)->stored, (PixelSize{160, 120}));
  EXPECT_GE(likeness(page(1, {"-filter", "Lanczos", "-resize", "160x120!"}), stored(result.bytes)),
            alikeWhenScaled);
  EXPECT_EQ(TiffPages(result.bytes).count(), 1);
}

TEST_F(TiffPagesTest, OfOneSizeAreWrittenAsTheFirst) {
  const Bytes source = pagesOf({{60, 40}, {320, 240}, {240, 320}, {320, 240}});
  const Bytes result = mustRewritePages(source, {.size = PixelSize{160, 120}}).bytes;
  EXPECT_GE(likeness(page(1, {"-filter", "Lanczos", "-resize", "160x120!"}), stored(result)),
            alikeWhenScaled);
}

TEST_F(TiffPagesTest, AllStayWhereNoPixelChanges) {
  const Bytes source = pagesOf({{60, 40}, {320, 240}});
  for (const RewriteRequest& request : {asItIs, toUpright}) {
    const RewrittenPhoto result = mustRewritePages(source, request);
    EXPECT_EQ(result.bytes, source);
    EXPECT_EQ(result.pagesLeftOut, 0);
  }
}

TEST_F(TiffPagesTest, MayBeginWithASmallerVersionOfTheNext) {
  const Bytes source = withTag(pagesOf({{60, 40}, {320, 240}}), "-IFD0:SubfileType=1");
  const Bytes result = mustRewritePages(source, {.size = PixelSize{160, 120}}).bytes;
  EXPECT_GE(likeness(page(1, {"-filter", "Lanczos", "-resize", "160x120!"}), stored(result)),
            alikeWhenScaled);
  EXPECT_EQ(mustRewritePages(source, asItIs).bytes, source);
  const Path path = writeFile(folder_ / "result.tif", result);
  EXPECT_EQ(runTool("exiftool", {"-n", "-s3", "-f", "-SubfileType", path.native()}).output, "2\n")
      << "not the kind of the page that was written";
}

TEST_F(TiffPagesTest, AreTurnedByTheirOwnOrientation) {
  const Bytes source = withTag(pagesOf({{60, 40}, {320, 240}}), "-IFD1:Orientation=6");
  EXPECT_EQ(sizeOf(source)->upright(), (PixelSize{240, 320}));
  const Bytes result = mustRewritePages(source, toUpright).bytes;
  EXPECT_EQ(likeness(page(1, {"-rotate", "90"}), stored(result)), 999);
  EXPECT_EQ(readPhotoProperties(result)->orientation.value_or(1), 1);
}

TEST_F(TiffPagesTest, ThatStateNoOrientationAreTurnedByThatOfTheFirst) {
  Bytes source = withTag(pagesOf({{60, 40}, {320, 240}}), "-IFD0:Orientation=6");
  source = withTag(source, "-IFD1:Orientation=");
  const Bytes result = mustRewritePages(source, toUpright).bytes;
  EXPECT_EQ(likeness(page(1, {"-rotate", "90"}), stored(result)), 999);
  EXPECT_EQ(readPhotoProperties(result)->orientation, 1);
}

TEST_F(TiffPagesTest, LeaveNoOrientationOfASmallerPageThatWouldTurnThePhotoAgain) {
  Bytes source = withTag(pagesOf({{60, 40}, {320, 240}}), "-IFD0:Orientation=6");
  source = withTag(source, "-IFD1:Orientation=1");
  const RewrittenPhoto result = mustRewritePages(source, toUpright);
  EXPECT_EQ(likeness(page(1), stored(result.bytes)), 999);
  EXPECT_EQ(readPhotoProperties(result.bytes)->orientation, 1);
  EXPECT_EQ(result.pagesLeftOut, 1);
}

TEST_F(TiffPagesTest, KeepTheOrientationOfTheWrittenOneWhenNotTurned) {
  Bytes source = withTag(pagesOf({{60, 40}, {320, 240}}), "-IFD0:Orientation=3");
  source = withTag(source, "-IFD1:Orientation=6");
  const Bytes result = mustRewritePages(source, {.size = PixelSize{160, 120}}).bytes;
  EXPECT_EQ(readPhotoProperties(result)->orientation, 6);
  EXPECT_EQ(sizeOf(result)->stored, (PixelSize{160, 120}));
}

/// A TIFF whose only page says that it is a smaller version of another picture.
TiffBlock rawFile() {
  TiffBlock file;
  claimSize(file, 20, 10);
  file.image.push_back(tiffLong(0x00FE, 1));
  file.image.push_back(tiffLong(0x014A, 8));
  return file;
}

TEST_F(TiffPagesTest, OfARawFileAreNotWrittenInThePlaceOfItsPicture) {
  EXPECT_FALSE(rewritten(rawFile().encode(), {.size = PixelSize{10, 5}}));
  TiffBlock preview = rawFile();
  preview.image.pop_back();
  EXPECT_TRUE(rewritten(preview.encode(), {.size = PixelSize{10, 5}}));
}

/// Where a little-endian TIFF holds the offset of its second directory.
std::size_t nextDirectoryField(const Bytes& tiff) {
  return 8 + 2 + 12 * (std::size_t{tiff.at(8)} | std::size_t{tiff.at(9)} << 8);
}

TEST_F(TiffPagesTest, AreCountedOnceWhereTheyFollowThemselves) {
  Bytes tiff = tiffPhoto({.width = 64, .height = 48});
  setWord(tiff, nextDirectoryField(tiff), 8);
  EXPECT_EQ(TiffPages(tiff).count(), 1);
}

TEST_F(TiffPagesTest, AreTooManyWhereTheirDirectoriesOverlap) {
  // Each two bytes begin a directory that claims to have as many entries as fit.
  Bytes tiff(4'000'000, 0xFF);
  const Bytes header{'I', 'I', 42, 0, 8, 0, 0, 0};
  std::copy(header.begin(), header.end(), tiff.begin());
  for (std::uint32_t directory = 8; directory < 800'008; directory += 4)
    setWord(tiff, directory + 2 + 12 * 0xFFFF, directory + 4);
  EXPECT_FALSE(measurePhoto(tiff));
}

}  // namespace
}  // namespace kestrova::imaging
