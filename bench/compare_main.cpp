// How close pictures come to a source scaled to their size by a Lanczos-3 filter in double precision, without
// rounding or clamping in between: peak signal to noise over red, green and blue and over luma (decibels),
// and the mean structural similarity of luma (Wang, Bovik, Sheikh, Simoncelli 2004; 8 x 8 windows, every
// fourth pixel).
//   kestrova-compare SOURCE PICTURE...
#include "support/external_tool.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <numbers>
#include <vector>

namespace {

using kestrova::test::Picture;

double lanczos(double x) {
  if (x == 0) return 1;
  if (std::abs(x) >= 3) return 0;
  const double angle = std::numbers::pi * x;
  return 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

/// Rows of red, green and blue.
struct Plane {
  int width = 0;
  int height = 0;
  std::vector<double> samples;

  double& at(int x, int y, int channel) {
    return samples[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x)) *
                       3 +
                   static_cast<std::size_t>(channel)];
  }
};

/// Scales the width and exchanges the axes.
Plane scaledAcross(Plane& source, int width) {
  Plane result{source.height, width, {}};
  result.samples.resize(source.samples.size() / static_cast<std::size_t>(source.width) *
                        static_cast<std::size_t>(width));
  const double step = static_cast<double>(source.width) / width;
  const double widening = std::max(1.0, step);
  for (int i = 0; i < width; ++i) {
    const double centre = (i + 0.5) * step;
    const int begin = std::max(0, static_cast<int>(centre - 3 * widening));
    const int end = std::min(source.width, static_cast<int>(centre + 3 * widening) + 1);
    std::vector<double> weights;
    double sum = 0;
    for (int x = begin; x < end; ++x) sum += weights.emplace_back(lanczos((x + 0.5 - centre) / widening));
    for (int y = 0; y < source.height; ++y) {
      for (int channel = 0; channel < 3; ++channel) {
        double value = 0;
        for (int x = begin; x < end; ++x)
          value += weights[static_cast<std::size_t>(x - begin)] * source.at(x, y, channel);
        result.at(y, i, channel) = value / sum;
      }
    }
  }
  return result;
}

Picture scaled(const Picture& source, int width, int height) {
  if (source.width == width && source.height == height) return source;
  Plane plane{source.width, source.height, {source.samples.begin(), source.samples.end()}};
  plane = scaledAcross(plane, width);
  plane = scaledAcross(plane, height);
  Picture picture{width, height, 3, {}};
  for (const double sample : plane.samples)
    picture.samples.push_back(static_cast<std::uint16_t>(std::lround(std::clamp(sample, 0.0, 65535.0))));
  return picture;
}

struct Luma {
  int width = 0;
  int height = 0;
  std::vector<double> samples;  // 0 to 1

  double at(int x, int y) const {
    return samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
  }
};

Luma lumaOf(const Picture& picture) {
  Luma luma{picture.width, picture.height, {}};
  for (std::size_t i = 0; i + 2 < picture.samples.size(); i += 3) {
    luma.samples.push_back(
        (0.299 * picture.samples[i] + 0.587 * picture.samples[i + 1] + 0.114 * picture.samples[i + 2]) /
        65535);
  }
  return luma;
}

double signalToNoise(const Luma& one, const Luma& other) {
  double squares = 0;
  for (std::size_t i = 0; i < one.samples.size(); ++i)
    squares += std::pow(one.samples[i] - other.samples[i], 2);
  return -10 * std::log10(squares / static_cast<double>(one.samples.size()));
}

double similarityAt(const Luma& one, const Luma& other, int left, int top) {
  double sumA = 0, sumB = 0, sumAA = 0, sumBB = 0, sumAB = 0;
  for (int y = top; y < top + 8; ++y) {
    for (int x = left; x < left + 8; ++x) {
      const double a = one.at(x, y);
      const double b = other.at(x, y);
      sumA += a, sumB += b, sumAA += a * a, sumBB += b * b, sumAB += a * b;
    }
  }
  const double meanA = sumA / 64, meanB = sumB / 64;
  const double varianceA = sumAA / 64 - meanA * meanA, varianceB = sumBB / 64 - meanB * meanB;
  const double covariance = sumAB / 64 - meanA * meanB;
  constexpr double c1 = 0.01 * 0.01, c2 = 0.03 * 0.03;
  return (2 * meanA * meanB + c1) * (2 * covariance + c2) /
         ((meanA * meanA + meanB * meanB + c1) * (varianceA + varianceB + c2));
}

double similarity(const Luma& one, const Luma& other) {
  double sum = 0;
  int windows = 0;
  for (int y = 0; y + 8 <= one.height; y += 4) {
    for (int x = 0; x + 8 <= one.width; x += 4, ++windows) sum += similarityAt(one, other, x, y);
  }
  return sum / windows;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) return std::fputs("kestrova-compare: a source and pictures are wanted\n", stderr), 2;
  const Picture source = kestrova::test::pictureOf(argv[1]);
  Picture reference;
  Luma referenceLuma;
  for (int i = 2; i < argc; ++i) {
    const Picture picture = kestrova::test::pictureOf(argv[i]);
    if (picture.width != reference.width || picture.height != reference.height) {
      reference = scaled(source, picture.width, picture.height);
      referenceLuma = lumaOf(reference);
    }
    const Luma luma = lumaOf(picture);
    std::printf("%.3f %.3f %.5f %s\n", kestrova::test::likeness(reference, picture),
                signalToNoise(referenceLuma, luma), similarity(referenceLuma, luma), argv[i]);
  }
} catch (const std::exception& error) {
  return std::fprintf(stderr, "kestrova-compare: %s\n", error.what()), 1;
}
