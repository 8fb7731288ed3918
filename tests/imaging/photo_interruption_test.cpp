#include "imaging/exif/xmp_patch.h"
#include "imaging/photo_rewrite.h"
#include "imaging/scale/raster_scaler.h"
#include "support/photo_types.h"
#include "support/rewriting.h"
#include "support/stop_counter.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

// Rewriting photos that is given up halfway.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

const RewriteRequest scaledAndTurned = toSizeUpright({60, 90});
const RewriteRequest onlyScaled = toSize({90, 60});

/// The parameters are the type of the photo and what is done with it.
class InterruptedPhotoTest : public testing::TestWithParam<std::tuple<ImageType, const RewriteRequest*>> {
 protected:
  tl::expected<RewrittenPhoto, RewriteError> rewrite(StopCounter& counter) const {
    const auto& [type, request] = GetParam();
    const SamplePhoto sample{.width = 180, .height = 120, .orientation = 6, .thumbnail = true};
    const Bytes photo = photoOf(type, sample);
    return rewritePhoto(photo, *measurePhoto(photo), *request, counter.stopped());
  }
};

TEST_P(InterruptedPhotoTest, IsGivenUpAtOnceWheneverItIsStopped) {
  StopCounter never;
  ASSERT_TRUE(rewrite(never));
  for (int call = 1; call <= never.asked(); ++call) {
    StopCounter counter(call);
    const auto result = rewrite(counter);
    ASSERT_FALSE(result) << call;
    EXPECT_TRUE(result.error().isInterrupted) << call << ": " << result.error().reason;
    EXPECT_EQ(counter.asked(), call);
  }
}

TEST_P(InterruptedPhotoTest, AsksForEveryFewRows) {
  StopCounter counter;
  ASSERT_TRUE(rewrite(counter));
  EXPECT_GE(counter.asked(), 120 / 16);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, InterruptedPhotoTest,
                         testing::Combine(allTypes, testing::Values(&asItIs, &toUpright, &onlyScaled,
                                                                    &scaledAndTurned)));

TEST(PhotoInterruption, IsNotWhatIsWrongWithADamagedPhoto) {
  Bytes photo = jpegPhoto({.width = 180, .height = 120});
  const MeasuredPhoto measured = *measurePhoto(photo);
  photo.resize(photo.size() / 2);
  StopCounter counter;
  const auto result = rewritePhoto(photo, measured, onlyScaled, counter.stopped());
  ASSERT_FALSE(result);
  EXPECT_FALSE(result.error().isInterrupted);
}

TEST(PhotoInterruption, IsPossibleWhileARasterIsTurned) {
  StopCounter counter;
  reoriented(Raster(640, 960, 1), {.transpose = true}, counter.stopped());
  EXPECT_GE(counter.asked(), 640 / 64);
  StopCounter stop(1);
  EXPECT_THROW(reoriented(Raster(640, 960, 1), {.mirrorX = true}, stop.stopped()), Interrupted);
}

TEST(PhotoInterruption, IsPossibleWhileTheWeightsOfAFilterAreComputed) {
  StopCounter counter;
  const LanczosAxis axis(wholeAxis(6400, 640), counter.stopped());
  EXPECT_GE(counter.asked(), 640 / 64);
}

TEST(PhotoInterruption, IsPossibleWhileOneRowBecomesMany) {
  StopCounter counter;
  RasterScaler scaler(wholeAxis(1, 1), wholeAxis(1, 640), PixelLayout{}, counter.stopped());
  const int before = counter.asked();
  const std::uint8_t row = 7;
  scaler.push(&row);
  EXPECT_GE(counter.asked() - before, 640 / 64);
}

TEST(PhotoInterruption, IsPossibleInALongXmpPacket) {
  Bytes packet(10'000, ':');
  StopCounter counter;
  editXmp(packet, {.exif = {.pixelSize = PixelSize{1, 1}}, .turnPreview = {}, .stopped = counter.stopped()});
  EXPECT_GE(counter.asked(), 1);
}

}  // namespace
}  // namespace kestrova::imaging
