#include "imaging/scale/resampler.h"

#include "imaging/base/image_error.h"
#include "imaging/base/raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

template <class Sample>
using Pixels = std::vector<Sample>;

template <class Sample>
Pixels<Sample> resampled(const Pixels<Sample>& source, const AxisMapping& x, const AxisMapping& y,
                         int channels = 1, bool alpha = false) {
  Resampler resampler(x, y, {channels, sizeof(Sample), alpha});
  const auto sourceRow = static_cast<std::size_t>(x.sourceCount * channels);
  const auto resultRow = static_cast<std::size_t>(x.resultCount * channels);
  Pixels<Sample> result(resultRow * static_cast<std::size_t>(y.resultCount));
  std::size_t done = 0;
  for (std::size_t row = 0; row < static_cast<std::size_t>(y.sourceCount); ++row) {
    resampler.push(source.data() + row * sourceRow);
    while (done < result.size() && resampler.pull(result.data() + done)) done += resultRow;
  }
  EXPECT_EQ(done, result.size());
  return result;
}

template <class Sample>
Pixels<Sample> noise(int width, int height, int channels) {
  std::mt19937 random(7);
  Pixels<Sample> pixels(static_cast<std::size_t>(width * height * channels));
  for (auto& sample : pixels) sample = static_cast<Sample>(random());
  return pixels;
}

double lanczos(double x) {
  const double angle = std::numbers::pi * x;
  return std::abs(x) >= 3 ? 0 : x == 0 ? 1 : 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

/// One sample by the definition of the filter, over both axes at once, in double precision.
template <class Sample>
double referenceSample(const Pixels<Sample>& source, int sourceWidth, int sourceHeight, int channels,
                       double centreX, double centreY, double stepX, double stepY, int channel) {
  double sum = 0;
  double weights = 0;
  for (int y = 0; y < sourceHeight; ++y) {
    const double weightY = lanczos((y + 0.5 - centreY) / std::max(1.0, stepY));
    if (weightY == 0) continue;
    for (int x = 0; x < sourceWidth; ++x) {
      const double weight = weightY * lanczos((x + 0.5 - centreX) / std::max(1.0, stepX));
      sum += weight * source[static_cast<std::size_t>((y * sourceWidth + x) * channels + channel)];
      weights += weight;
    }
  }
  return std::clamp(sum / weights, 0.0, static_cast<double>(std::numeric_limits<Sample>::max()));
}

constexpr double roundingError = 0.51;
constexpr double floatError = 1e-6;  ///< of the filter's sums in single precision, of the largest sample

template <class Sample>
void expectLikeReference(int width, int height, int resultWidth, int resultHeight, int channels) {
  const auto source = noise<Sample>(width, height, channels);
  const auto x = wholeAxis(width, resultWidth);
  const auto y = wholeAxis(height, resultHeight);
  const auto result = resampled(source, x, y, channels);
  double worst = 0;
  for (int i = 0; i < resultWidth * resultHeight * channels; ++i) {
    const int channel = i % channels;
    const int column = i / channels % resultWidth;
    const int row = i / channels / resultWidth;
    const double expected = referenceSample(source, width, height, channels, (column + 0.5) * x.step,
                                            (row + 0.5) * y.step, x.step, y.step, channel);
    worst = std::max(worst, std::abs(expected - static_cast<double>(result[static_cast<std::size_t>(i)])));
  }
  EXPECT_LE(worst, roundingError + std::numeric_limits<Sample>::max() * floatError)
      << channels << " channels of " << sizeof(Sample) << " bytes, " << width << "x" << height << " to "
      << resultWidth << "x" << resultHeight;
}

TEST(Resampler, GivesTheLanczosSumsOfEightBitSamples) {
  for (int channels = 1; channels <= 4; ++channels)
    expectLikeReference<std::uint8_t>(97, 61, 31, 23, channels);
}

TEST(Resampler, GivesTheLanczosSumsOfSixteenBitSamples) {
  for (int channels = 1; channels <= 4; ++channels)
    expectLikeReference<std::uint16_t>(97, 61, 31, 23, channels);
}

TEST(Resampler, GivesTheLanczosSumsWhateverTheProportions) {
  expectLikeReference<std::uint8_t>(1, 50, 1, 7, 1);
  expectLikeReference<std::uint8_t>(50, 1, 7, 1, 3);
  expectLikeReference<std::uint8_t>(2, 2, 1, 1, 1);
  expectLikeReference<std::uint8_t>(300, 5, 2, 5, 1);
  expectLikeReference<std::uint8_t>(9, 7, 20, 15, 1);
}

TEST(Resampler, KeepsEverySampleWhenTheSizeStays) {
  const auto source = noise<std::uint16_t>(37, 29, 3);
  EXPECT_EQ(resampled(source, wholeAxis(37, 37), wholeAxis(29, 29), 3), source);
}

TEST(Resampler, KeepsAFlatPictureFlat) {
  const Pixels<std::uint8_t> source(200 * 100, 201);
  const auto result = resampled(source, wholeAxis(200, 33), wholeAxis(100, 17));
  EXPECT_TRUE(std::ranges::all_of(result, [](int sample) { return sample == 201; }));
}

TEST(Resampler, ShiftsNothing) {
  Pixels<std::uint16_t> ramp(400);
  for (std::size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<std::uint16_t>(100 * i);
  const auto result = resampled(ramp, wholeAxis(400, 100), wholeAxis(1, 1));
  for (std::size_t i = 10; i < 90; ++i) EXPECT_NEAR(result[i], 100 * (4.0 * static_cast<double>(i) + 1.5), 1);
}

TEST(Resampler, GivesTheMirroredPictureMirrored) {
  auto source = noise<std::uint8_t>(83, 1, 1);
  auto result = resampled(source, wholeAxis(83, 19), wholeAxis(1, 1));
  std::ranges::reverse(source);
  std::ranges::reverse(result);
  EXPECT_EQ(resampled(source, wholeAxis(83, 19), wholeAxis(1, 1)), result);
}

/// A row as shown by decoders that replace each sample by two, each mixed from three quarters of it and one
/// of its neighbour.
std::vector<double> interpolated(const Pixels<std::uint8_t>& row) {
  std::vector<double> result;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const double left = row[i == 0 ? 0 : i - 1];
    const double right = row[std::min(i + 1, row.size() - 1)];
    result.push_back((3 * row[i] + left) / 4);
    result.push_back((3 * row[i] + right) / 4);
  }
  return result;
}

TEST(Resampler, ScalesWhatDecodersInterpolateAsIfItWereInterpolatedBefore) {
  const auto source = noise<std::uint8_t>(60, 1, 1);
  const auto shown = interpolated(source);
  for (const int width : {7, 33, 60, 90, 120}) {
    AxisMapping axis = wholeAxis(60, width);
    axis.interpolated = true;
    EXPECT_FALSE(axis.isIdentity());
    const auto result = resampled(source, axis, wholeAxis(1, 1));
    for (int i = 0; i < width; ++i) {
      const double step = 120.0 / width;
      const double expected = referenceSample(shown, 120, 1, 1, (i + 0.5) * step, 0.5, step, 1, 0);
      EXPECT_NEAR(result[static_cast<std::size_t>(i)], std::clamp(expected, 0.0, 255.0), roundingError)
          << i << " of " << width;
    }
  }
}

TEST(Resampler, LetsTransparentColoursNotBleed) {
  constexpr std::uint8_t colour = 200;
  constexpr int nearlyTransparent = 8;  // opacity; the colour is only roughly known
  constexpr int colourError = 2;
  constexpr int opaqueColumns = 7;  // of the 15 of the result
  Pixels<std::uint8_t> source;
  for (int i = 0; i < 40 * 40; ++i) {
    const bool opaque = i % 40 < 21;
    source.push_back(opaque ? colour : 0);
    source.push_back(opaque ? 255 : 0);
  }
  const auto result = resampled(source, wholeAxis(40, 15), wholeAxis(40, 15), 2, true);
  int seen = 0;
  for (std::size_t i = 0; i < result.size(); i += 2) {
    if (result[i + 1] <= nearlyTransparent) continue;
    EXPECT_NEAR(result[i], colour, colourError) << "at " << i / 2;
    ++seen;
  }
  EXPECT_GE(seen, opaqueColumns * 15);
}

TEST(Resampler, RefusesWhatWouldTakeTooMuchMemory) {
  EXPECT_THROW(Resampler(wholeAxis(900'000'000, 900), wholeAxis(1, 1),
                         {.channels = 4, .bytesPerSample = 2, .alpha = true}),
               ImageError);
}

TEST(Raster, CountsTheRoomAfterNarrowRows) {
  EXPECT_THROW(Raster(1, 20'000'000, 8), ImageError);
  EXPECT_NO_THROW(Raster(8, 2'000'000, 8));
}

}  // namespace
}  // namespace kestrova::imaging
