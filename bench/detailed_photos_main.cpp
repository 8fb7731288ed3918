// Makes detailed photos to measure with: leaves of all sizes that cover each other ("dead leaves", whose
// statistics are those of natural scenes), with a grain on them, as JPEG of quality 92, 8 to 24 megapixels.
//   kestrova-detailed-photos FOLDER COUNT
#include "imaging/jpeg/jpeg_pixels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

struct Size {
  int width = 0;
  int height = 0;
};

constexpr Size sizes[] = {{3264, 2448}, {3456, 2304}, {4000, 3000}, {4032, 3024}, {4608, 3456},
                          {4896, 3264}, {5184, 3456}, {3024, 4032}, {5472, 3648}, {6000, 4000}};

using Random = std::mt19937;

double uniform(Random& random) { return std::generate_canonical<double, 32>(random); }

class Canvas {
 public:
  explicit Canvas(const Size& size)
      : size_(size),
        pixels_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 3, 128) {}

  /// One leaf: an ellipse of one colour, striped.
  void leaf(Random& random, double radius) {
    const double x = uniform(random) * size_.width;
    const double y = uniform(random) * size_.height;
    const double angle = uniform(random) * 3.1416;
    const double flatness = 0.3 + 0.7 * uniform(random);
    const double stripes = 0.2 + uniform(random);
    const double contrast = 40 * uniform(random);
    const double light = 20 + 215 * uniform(random);
    const double tint[3] = {light, light + 60 * (uniform(random) - 0.5),
                            light + 90 * (uniform(random) - 0.5)};
    for (int row = std::max(0, static_cast<int>(y - radius));
         row < std::min(size_.height, static_cast<int>(y + radius)); ++row) {
      for (int column = std::max(0, static_cast<int>(x - radius));
           column < std::min(size_.width, static_cast<int>(x + radius)); ++column) {
        const double along = (column - x) * std::cos(angle) + (row - y) * std::sin(angle);
        const double across = ((row - y) * std::cos(angle) - (column - x) * std::sin(angle)) / flatness;
        if (along * along + across * across > radius * radius) continue;
        const double shade = contrast * std::sin(along * stripes);
        std::uint8_t* pixel = at(column, row);
        for (int c = 0; c < 3; ++c)
          pixel[c] = static_cast<std::uint8_t>(std::clamp(tint[c] + shade, 0.0, 255.0));
      }
    }
  }

  void grain(Random& random) {
    for (auto& sample : pixels_) {
      const int noise = static_cast<int>(random() >> 29) - 4;
      sample = static_cast<std::uint8_t>(std::clamp(sample + noise, 0, 255));
    }
  }

  kestrova::Bytes jpeg(int pixelsPerColorY) const {
    const auto rowBytes = 3 * static_cast<std::size_t>(size_.width);
    return kestrova::imaging::encodePixels(
        {.size = {size_.width, size_.height},
         .pixelBytes = 3,
         .rowAt = [&](std::int64_t y) { return pixels_.data() + static_cast<std::size_t>(y) * rowBytes; }},
        {.quality = 92, .pixelsPerColorX = 2, .pixelsPerColorY = pixelsPerColorY});
  }

 private:
  std::uint8_t* at(int x, int y) {
    return pixels_.data() + 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.width) +
                                 static_cast<std::size_t>(x));
  }

  Size size_;
  std::vector<std::uint8_t> pixels_;
};

void makePhoto(const std::filesystem::path& path, unsigned index) {
  Random random(index);
  const Size size = sizes[index % std::size(sizes)];
  Canvas canvas(size);
  // Radii by the inverse of their cube: leaves of every scale then cover as much as those of any other.
  constexpr double smallest = 3;
  constexpr double largest = 500;
  const double toCover = 6.0 * size.width * size.height;
  for (double covered = 0; covered < toCover;) {
    const double spread = 1 - (smallest / largest) * (smallest / largest);
    const double radius = smallest / std::sqrt(1 - uniform(random) * spread);
    canvas.leaf(random, radius);
    covered += 2 * radius * radius;
  }
  canvas.grain(random);
  const auto file = canvas.jpeg(index % 4 == 3 ? 1 : 2);
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return std::fputs("kestrova-detailed-photos: a folder and a count are wanted\n", stderr), 2;
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  for (unsigned i = 0; i < std::strtoul(argv[2], nullptr, 10); ++i) {
    makePhoto(folder / ("photo-" + std::to_string(i) + ".jpg"), i);
  }
}
