#include "imaging/exif/exif_values.h"

#include "imaging/exif/tiff_tags.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kestrova::imaging {

namespace {

/// A text that is cut off at the end of the bytes may lack its last digits and then be read as another time;
/// so it only counts if it is long enough for a whole date.
void takeText(PhotoProperties& into, ByteView text, std::uint64_t statedLength) noexcept {
  constexpr std::size_t wholeDate = std::string_view("yyyy:MM:dd HH:mm:ss").size();
  if (into.digitizedLength > 0) return;
  const auto nul = std::find(text.begin(), text.end(), std::uint8_t{0});
  const bool isCutOff = nul == text.end() && text.size() < statedLength;
  if (isCutOff && text.size() < wholeDate) return;
  const auto end =
      std::find_if(std::reverse_iterator(nul), text.rend(), [](std::uint8_t c) { return c != ' '; }).base();
  std::copy(text.begin(), end, into.digitizedText.begin());
  into.digitizedLength = static_cast<std::size_t>(end - text.begin());
}

void readExifDirectory(const TiffReader& tiff, std::uint64_t directory, ExifValues& values) noexcept {
  tiff.visitEntries(directory, [&](const TiffReader::Entry& entry) {
    PhotoProperties& properties = values.properties;
    switch (entry.tag) {
      case tag::dateTimeDigitized:
        takeText(properties, tiff.text(entry, properties.digitizedText.size()), entry.count);
        break;
      case tag::pixelXDimension:
        takeNumber(values.pixelXDimension, tiff.integer(entry));
        break;
      case tag::pixelYDimension:
        takeNumber(values.pixelYDimension, tiff.integer(entry));
        break;
      default:
        break;
    }
  });
}

}  // namespace

void takeNumber(std::optional<std::int64_t>& into, std::optional<std::int64_t> number,
                std::int64_t largest) noexcept {
  if (!into && number && *number >= 1 && *number <= largest) into = number;
}

PhotoProperties readDirectory(const TiffReader& tiff, std::uint64_t directory) noexcept {
  PhotoProperties properties;
  constexpr std::int64_t largestOrientation = 8;
  tiff.visitEntries(directory, [&](const TiffReader::Entry& entry) {
    switch (entry.tag) {
      case tag::imageWidth:
        takeNumber(properties.pixelWidth, tiff.integer(entry));
        break;
      case tag::imageLength:
        takeNumber(properties.pixelHeight, tiff.integer(entry));
        break;
      case tag::orientation:
        takeNumber(properties.orientation, tiff.integer(entry), largestOrientation);
        break;
      default:
        break;
    }
  });
  return properties;
}

std::uint64_t exifDirectoryOf(const TiffReader& tiff) noexcept {
  std::optional<std::int64_t> directory;
  tiff.visitEntries(tiff.firstDirectory(), [&](const TiffReader::Entry& entry) {
    if (entry.tag == tag::exifDirectory) takeNumber(directory, tiff.integer(entry));
  });
  return static_cast<std::uint64_t>(directory.value_or(0));
}

ExifValues readExif(ByteView block) noexcept {
  ExifValues values;
  const std::optional<TiffReader> tiff = TiffReader::open(block);
  if (!tiff) return values;
  values.properties = readDirectory(*tiff, tiff->firstDirectory());
  readExifDirectory(*tiff, exifDirectoryOf(*tiff), values);
  return values;
}

}  // namespace kestrova::imaging
