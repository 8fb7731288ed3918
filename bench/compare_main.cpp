// How close pictures come to a reference: peak signal to noise over red, green and blue and over luma
// (decibels), and the mean structural similarity of luma (Wang, Bovik, Sheikh, Simoncelli 2004; 8 x 8
// windows, every fourth pixel).
//   kestrova-compare REFERENCE PICTURE...
#include "support/external_tool.h"

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <vector>

namespace {

using kestrova::test::Picture;

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
  if (argc < 3) return std::fputs("kestrova-compare: a reference and pictures are wanted\n", stderr), 2;
  const Picture reference = kestrova::test::pictureOf(argv[1]);
  const Luma referenceLuma = lumaOf(reference);
  for (int i = 2; i < argc; ++i) {
    const Picture picture = kestrova::test::pictureOf(argv[i]);
    if (picture.width != reference.width || picture.height != reference.height) {
      std::printf("%s: %d x %d\n", argv[i], picture.width, picture.height);
      continue;
    }
    const Luma luma = lumaOf(picture);
    std::printf("%.3f %.3f %.5f %s\n", kestrova::test::likeness(reference, picture),
                signalToNoise(referenceLuma, luma), similarity(referenceLuma, luma), argv[i]);
  }
} catch (const std::exception& error) {
  return std::fprintf(stderr, "kestrova-compare: %s\n", error.what()), 1;
}
