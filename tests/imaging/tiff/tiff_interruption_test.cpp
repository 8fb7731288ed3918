#include "imaging/tiff/tiff_decoder.h"
#include "imaging/tiff/tiff_encoder.h"
#include "imaging/tiff/tiff_pages.h"
#include "imaging/tiff/tiff_rewrite.h"
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
Bytes converted(const PixelSize& size, const std::vector<std::string>& settings) {
  const TemporaryFolder folder;
  const SamplePhoto sample{.width = static_cast<int>(size.width), .height = static_cast<int>(size.height)};
  const Path source = writeFile(folder / "source.png", pngPhoto(sample));
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
  EXPECT_GE(askedWhileDecoding(converted({64, height}, {"-compress", "LZW"})), height / 64);
}

TEST(TiffInterruption, IsPossibleForEveryTile) {
  constexpr int tiles = 640 / 16;
  EXPECT_GE(askedWhileDecoding(converted({640, 16}, {"-define", "tiff:tile-geometry=16x16"})), tiles);
}

// Rows that have been decoded are still to be filtered.
TEST(TiffInterruption, IsPossibleForTheRowsOfAHighTile) {
  EXPECT_GE(askedWhileDecoding(converted({64, height}, {"-define", "tiff:tile-geometry=64x640"})),
            height / 64);
}

TEST(TiffInterruption, IsPossibleWhileRowsAreEncoded) {
  const Bytes file = tiffPhoto({.width = 64, .height = height});
  const std::uint64_t directory = TiffPages(file).first().directory;
  const TiffPicture picture = decodeTiff(file, directory, {.source = {64, height}, .scaled = {64, height}});
  StopCounter counter;
  encodeTiff(picture, file, directory, counter.stopped());
  EXPECT_GE(counter.asked(), height / 64);
}

TEST(TiffInterruption, IsPossibleInEveryStep) {
  const Bytes file = tiffPhoto({.width = 64, .height = height});
  RewritePlan plan{.source = {64, height}, .scaled = {32, height / 2}, .reorientation = {.mirrorX = true}};
  const std::uint64_t directory = TiffPages(file).first().directory;
  StopCounter steps;
  plan.stopped = steps.stopped();
  const TiffPicture picture = decodeTiff(file, directory, plan);
  constexpr int rowsAndWeights = height + 32 + height / 2;
  constexpr int tilesTurned = height / 2 / 32;
  EXPECT_GE(steps.asked(), rowsAndWeights + tilesTurned);
  encodeTiff(picture, file, directory, steps.stopped());

  StopCounter all;
  plan.stopped = all.stopped();
  rewriteTiff(file, plan, {.stopped = all.stopped()});
  EXPECT_GE(all.asked(), steps.asked());
}

}  // namespace
}  // namespace kestrova::imaging
