#include "imaging/tiff/tiff_pages.h"

#include "imaging/base/image_error.h"
#include "imaging/exif/exif_values.h"
#include "imaging/exif/tiff_reader.h"
#include "imaging/exif/tiff_tags.h"

#include <algorithm>
#include <set>

namespace kestrova::imaging {

namespace {

/// Of all pages together. With overlapping directories a small file could take forever.
constexpr std::uint64_t mostEntries = 1'000'000;

TiffPage readPage(const TiffReader& tiff, std::uint64_t directory) {
  constexpr std::int64_t reducedImage = 1;
  const PhotoProperties properties = readDirectory(tiff, directory);
  const std::int64_t kind = tiff.integer(directory, tag::subfileType).value_or(0);
  return {.directory = directory,
          .size = {properties.pixelWidth.value_or(0), properties.pixelHeight.value_or(0)},
          .orientation = properties.orientation,
          .isReduced = (kind & reducedImage) != 0,
          .hasSubDirectories = tiff.find(directory, tag::subDirectories).has_value()};
}

}  // namespace

TiffPages::TiffPages(ByteView file) {
  const auto tiff = TiffReader::open(file);
  if (!tiff) throw ImageError("not a TIFF");
  std::set<std::uint64_t> visited;
  std::uint64_t entries = 0;
  std::uint64_t directory = tiff->firstDirectory();
  while (directory != 0 && visited.insert(directory).second) {
    entries += 1 + std::min(tiff->entryCount(directory).value_or(0), mostEntries);
    if (entries > mostEntries) throw ImageError("the TIFF has too many pages");
    const TiffPage page = readPage(*tiff, directory);
    if (page.size.width > 0 && page.size.height > 0) pages_.push_back(page);
    directory = tiff->nextDirectory(directory);
  }
  if (pages_.empty()) throw ImageError("the TIFF has no page that states a size");
}

const TiffPage& TiffPages::largest() const {
  return *std::ranges::max_element(pages_, {}, [](const TiffPage& page) {
    return static_cast<double>(page.size.width) * static_cast<double>(page.size.height);
  });
}

PixelSize TiffPages::largestSides() const {
  PixelSize sides;
  for (const TiffPage& page : pages_) {
    sides.width = std::max(sides.width, page.size.width);
    sides.height = std::max(sides.height, page.size.height);
  }
  return sides;
}

std::int64_t TiffPages::orientationOf(const TiffPage& page) const {
  return page.orientation.value_or(first().orientation.value_or(1));
}

bool TiffPages::areUpright() const {
  return std::ranges::all_of(pages_, [&](const TiffPage& page) { return orientationOf(page) == 1; });
}

}  // namespace kestrova::imaging
