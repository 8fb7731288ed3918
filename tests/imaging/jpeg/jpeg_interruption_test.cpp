#include "imaging/jpeg/jpeg_encoder.h"
#include "imaging/jpeg/jpeg_metadata.h"
#include "imaging/jpeg/jpeg_planes.h"
#include "imaging/jpeg/jpeg_reorientation.h"
#include "imaging/jpeg/jpeg_rewrite.h"
#include "support/sample_media.h"
#include "support/stop_counter.h"

#include <vector>

#include <gtest/gtest.h>

// Each step of rewriting a JPEG asks whether to stop for every row of blocks, in every pass.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

constexpr PixelSize size{320, 640};
constexpr int blockRows = 640 / 16;
const SamplePhoto sample{.width = 320, .height = 640, .exif = false};
const SamplePhoto progressive{.width = 320, .height = 640, .exif = false, .progressive = true};
const Reorientation quarterTurn{.mirrorY = true, .transpose = true};

TEST(JpegInterruption, IsPossibleWhilePixelsAreDecoded) {
  StopCounter counter;
  verifyJpeg(jpegPhoto(sample), counter.stopped());
  EXPECT_GE(counter.asked(), blockRows);
}

TEST(JpegInterruption, IsPossibleInEveryScan) {
  StopCounter counter;
  verifyJpeg(jpegPhoto(progressive), counter.stopped());
  constexpr int scans = 10;
  EXPECT_GE(counter.asked(), scans * blockRows);
}

TEST(JpegInterruption, IsPossibleWhilePixelsAreEncoded) {
  const Bytes photo = jpegPhoto(sample);
  JpegDecoder decoder(photo, {});
  JpegPlanes picture = decodePlanes(decoder, {.source = size, .scaled = size});
  StopCounter counter;
  encodeJpeg(picture, 90, counter.stopped());
  EXPECT_GE(counter.asked(), blockRows);
}

TEST(JpegInterruption, IsPossibleWhilePlanesAreScaled) {
  const Bytes photo = jpegPhoto(sample);
  JpegDecoder decoder(photo, {});
  StopCounter counter;
  decodePlanes(decoder, {.source = size, .scaled = {160, 320}, .stopped = counter.stopped()});
  constexpr int weightsOfThePlanes = 3 * (160 + 320);
  EXPECT_GE(counter.asked(), weightsOfThePlanes);
}

TEST(JpegInterruption, IsPossibleWhilePlanesAreTurned) {
  const Bytes photo = jpegPhoto(sample);
  JpegDecoder decoder(photo, {});
  StopCounter counter;
  decodePlanes(decoder,
               {.source = size, .scaled = size, .reorientation = quarterTurn, .stopped = counter.stopped()});
  constexpr int tiles = 320 * 640 / (32 * 32);
  EXPECT_GE(counter.asked(), tiles);
}

/// How often the steps ask of which rewriting the pixels consists.
int askedInSteps(const Bytes& photo, RewritePlan plan, int quality) {
  StopCounter counter;
  plan.stopped = counter.stopped();
  JpegDecoder decoder(photo, {.stopped = plan.stopped});
  JpegPlanes picture = decodePlanes(decoder, plan);
  encodeJpeg(picture, quality, plan.stopped);
  return counter.asked();
}

TEST(JpegInterruption, IsPossibleInEveryStep) {
  const Bytes photo = jpegPhoto(sample);
  RewritePlan plan{.source = size, .scaled = {160, 320}};
  const int expected = askedInSteps(photo, plan, 90);
  StopCounter counter;
  plan.stopped = counter.stopped();
  rewriteJpeg(photo, plan, {});
  EXPECT_GE(counter.asked(), expected);
}

TEST(JpegInterruption, IsPossibleWhileCoefficientsAreTurned) {
  const Bytes photo = jpegPhoto(sample);
  StopCounter counter;
  JpegDecoder decoder(photo, {.stopped = counter.stopped()});
  reorientCoefficients(decoder, {.source = size, .scaled = size, .reorientation = quarterTurn});
  EXPECT_GE(counter.asked(), blockRows) << "while they are read";

  StopCounter others;
  JpegDecoder another(photo, {});
  reorientCoefficients(
      another, {.source = size, .scaled = size, .reorientation = quarterTurn, .stopped = others.stopped()});
  constexpr int rowsOfTheThree = 320 / 8 + 2 * 320 / 16;
  constexpr int writtenInTwoPasses = 2 * 320 / 16;
  EXPECT_GE(others.asked(), rowsOfTheThree + writtenInTwoPasses);
}

TEST(JpegInterruption, IsPossibleBetweenSegments) {
  constexpr int segments = 1000;
  const std::vector<Bytes> comments(segments, Bytes{0xFF, 0xFE, 0, 2});
  const Bytes file = withSegments(jpegPhoto(sample), comments);
  StopCounter counter;
  joinJpeg(file, outlineJpeg(file), jpegPhoto(sample), {.stopped = counter.stopped()});
  EXPECT_GE(counter.asked(), segments);
}

class InterruptedPreviewTest : public testing::Test {
 protected:
  /// How often turning the preview asks; every one of these calls can stop it.
  int askedFor(const Bytes& preview) {
    const auto turn = [&](StopCounter& counter) {
      Bytes bytes = preview;
      const PreviewTurner turner = previewTurner(
          {.source = size, .scaled = size, .reorientation = quarterTurn, .stopped = counter.stopped()});
      return turner(bytes);
    };
    StopCounter never;
    EXPECT_GT(turn(never), 0U);
    for (int call = 1; call <= never.asked(); ++call) {
      StopCounter counter(call);
      EXPECT_THROW(turn(counter), Interrupted) << call;
    }
    return never.asked();
  }
};

TEST_F(InterruptedPreviewTest, IsGivenUpWheneverItIsStopped) {
  EXPECT_GE(askedFor(jpegPhoto({.width = 96, .height = 64, .exif = false})), 64 / 16 * 2);
}

// A photo of partial blocks is encoded again to turn it, first in a quality that needs too many bytes here.
TEST_F(InterruptedPreviewTest, IsGivenUpInItsSecondAttempt) {
  const PixelSize odd{93, 61};
  const Bytes photo = jpegPhoto({.width = 93, .height = 61, .exif = false});
  JpegDecoder decoder(photo, {});
  JpegPlanes picture = decodePlanes(decoder, {.source = odd, .scaled = odd});
  const Bytes tight = encodeJpeg(picture, 92);
  const int attempt = askedInSteps(tight, {.source = odd, .scaled = odd, .reorientation = quarterTurn}, 90);
  EXPECT_EQ(askedFor(tight), 2 * attempt);
}

}  // namespace
}  // namespace kestrova::imaging
