#include "imaging/png/png_chunks.h"
#include "imaging/png/png_library.h"
#include "imaging/png/png_rewrite.h"
#include "support/sample_media.h"
#include "support/stop_counter.h"

#include <vector>

#include <gtest/gtest.h>

// Each step of rewriting a PNG asks whether to stop.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr PixelSize size{16, 640};
constexpr int passes = 7;

Bytes encoded(int interlace, StopCounter& counter) {
  const PngFormat format{.size = size, .colorType = PNG_COLOR_TYPE_GRAY, .interlace = interlace};
  return encodePng({.format = format, .palette = {}, .raster = Raster(size.width, size.height, 1)},
                   counter.stopped());
}

TEST(PngInterruption, IsPossibleWhileRowsAreEncoded) {
  StopCounter counter;
  encoded(PNG_INTERLACE_NONE, counter);
  EXPECT_GE(counter.asked(), size.height / 64);
}

TEST(PngInterruption, IsPossibleWhileRowsAreDecoded) {
  StopCounter counter;
  const Bytes file = encoded(PNG_INTERLACE_NONE, counter);
  StopCounter decoding;
  PngDecoder(file).decode([](const std::uint8_t*) {}, decoding.stopped());
  EXPECT_GE(decoding.asked(), size.height / 64);
}

TEST(PngInterruption, IsPossibleInEveryPass) {
  StopCounter encoding;
  const Bytes file = encoded(PNG_INTERLACE_ADAM7, encoding);
  EXPECT_GE(encoding.asked(), passes * size.height / 64);
  StopCounter decoding;
  PngDecoder(file).decode([](const std::uint8_t*) {}, decoding.stopped());
  EXPECT_GE(decoding.asked(), passes * size.height / 64);
}

TEST(PngInterruption, IsPossibleInEveryStep) {
  const Bytes file = pngPhoto({.width = 64, .height = 640});
  StopCounter counter;
  rewritePng(file,
             {.source = {64, 640},
              .scaled = {32, 320},
              .reorientation = {.mirrorX = true},
              .stopped = counter.stopped()},
             {});
  constexpr int decodedRows = 640;
  constexpr int encodedRows = 320;
  constexpr int weights = 32 + 320;
  constexpr int tilesTurned = 320 / 32;
  EXPECT_GE(counter.asked(), decodedRows + encodedRows + weights + tilesTurned);
}

TEST(PngInterruption, IsPossibleWhilePixelsThatStayAreDecoded) {
  const Bytes file = pngPhoto({.width = 64, .height = 640});
  StopCounter counter;
  rewritePng(file, {.source = {64, 640}, .scaled = {64, 640}, .stopped = counter.stopped()}, {});
  EXPECT_GE(counter.asked(), 640 / 64);
}

TEST(PngInterruption, IsPossibleWithinALongChunk) {
  const Bytes file =
      withChunks(pngPhoto({.width = 16, .height = 16}), {pngChunk("loNg", Bytes(10'000'000, 0))});
  StopCounter counter;
  requireWholePng(file, counter.stopped());
  EXPECT_GE(counter.asked(), 10);
}

TEST(PngInterruption, IsPossibleBetweenChunks) {
  constexpr int chunks = 1000;
  const std::vector<Bytes> all(chunks, pngChunk("shOt", {}));
  const Bytes file = withChunks(pngPhoto({.width = 16, .height = 16}), all);
  StopCounter counter;
  rewritePng(file, {.source = {16, 16}, .scaled = {16, 16}}, {.stopped = counter.stopped()});
  EXPECT_GE(counter.asked(), chunks);
}

}  // namespace
}  // namespace kestrova::imaging
