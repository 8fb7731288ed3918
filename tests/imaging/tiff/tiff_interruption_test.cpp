#include "imaging/tiff/tiff_decoder.h"
#include "imaging/tiff/tiff_encoder.h"
#include "imaging/tiff/tiff_pages.h"
#include "support/external_tool.h"
#include "support/photo_reading.h"
#include "support/sample_media.h"
#include "support/stop_counter.h"
#include "support/temporary_folder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

// Each step of rewriting a TIFF asks whether to stop.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr int height = 640;

/// A TIFF as ImageMagick writes it with these settings.
Bytes converted(const std::vector<std::string>& settings) {
  const TemporaryFolder folder;
  const Path source = writeFile(folder / "source.png", pngPhoto({.width = 64, .height = height}));
  std::vector<std::string> arguments{source.native()};
  arguments.insert(arguments.end(), settings.begin(), settings.end());
  arguments.push_back((folder / "result.tif").native());
  EXPECT_EQ(runTool("convert", arguments).status, 0);
  return bytesOf(folder / "result.tif");
}

int askedWhileDecoding(const Bytes& file) {
  StopCounter counter;
  verifyTiff(file, TiffPages(file).first().directory, counter.stopped());
  return counter.asked();
}

TEST(TiffInterruption, IsPossibleWhileStripsAreDecoded) {
  EXPECT_GE(askedWhileDecoding(converted({"-compress", "LZW"})), height / 64);
}

// Rows that have been decoded are still to be filtered.
TEST(TiffInterruption, IsPossibleForEveryTileAndEveryRowOfIt) {
  constexpr int tiles = 4 * height / 16;
  EXPECT_GE(askedWhileDecoding(converted({"-define", "tiff:tile-geometry=16x16"})), tiles + height / 64);
  EXPECT_GE(askedWhileDecoding(converted({"-define", "tiff:tile-geometry=64x640"})), 1 + height / 64);
}

TEST(TiffInterruption, IsPossibleWhileRowsAreEncoded) {
  const Bytes file = tiffPhoto({.width = 64, .height = height});
  const std::uint64_t directory = TiffPages(file).first().directory;
  const TiffPicture picture = decodeTiff(file, directory, {.source = {64, height}, .scaled = {64, height}});
  StopCounter counter;
  encodeTiff(picture, file, directory, counter.stopped());
  EXPECT_GE(counter.asked(), height / 64);
}

}  // namespace
}  // namespace kestrova::imaging
