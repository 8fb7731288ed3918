#include "imaging/photo_properties.h"

#include "imaging/base/byte_reader.h"
#include "imaging/exif/tiff_reader.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kestrova::imaging {
namespace {

constexpr std::string_view jpegSignature = "\xFF\xD8";
constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";
constexpr std::string_view exifName{"Exif\0", 5};  // one more byte follows, of any value

enum TiffTag : std::uint16_t {
  imageWidthTag = 0x0100,
  imageLengthTag = 0x0101,
  orientationTag = 0x0112,
  exifDirectoryTag = 0x8769,
  dateTimeDigitizedTag = 0x9004,
  pixelXDimensionTag = 0xA002,
  pixelYDimensionTag = 0xA003,
};

/// What a TIFF block says; the two pixel sizes are of different rank in different files.
struct TiffValues {
  PhotoProperties properties;  ///< the size: ImageWidth and ImageLength
  std::optional<std::int64_t> pixelXDimension;
  std::optional<std::int64_t> pixelYDimension;
};

bool startsWith(ByteView bytes, std::string_view name) noexcept {
  return bytes.size() >= name.size() &&
         std::equal(name.begin(), name.end(), bytes.begin(),
                    [](char c, std::uint8_t b) { return static_cast<std::uint8_t>(c) == b; });
}

/// Takes over a value unless an earlier entry gave one already or this one is out of its range.
void take(std::optional<std::int64_t>& into, std::optional<std::int64_t> value,
          std::int64_t largest = INT64_MAX) {
  if (!into && value && *value >= 1 && *value <= largest) into = value;
}

/// A text that ends with the bytes at hand, before its own end, may lack its last digits and would then pass
/// for another time; so it counts only when there is enough of it for a whole date.
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

void readExifDirectory(const TiffReader& tiff, std::uint64_t directory, TiffValues& values) noexcept {
  tiff.visitEntries(directory, [&](const TiffReader::Entry& entry) {
    PhotoProperties& properties = values.properties;
    switch (entry.tag) {
      case dateTimeDigitizedTag:
        return takeText(properties, tiff.text(entry, properties.digitizedText.size()), entry.count);
      case pixelXDimensionTag:
        return take(values.pixelXDimension, tiff.integer(entry));
      case pixelYDimensionTag:
        return take(values.pixelYDimension, tiff.integer(entry));
      default:
        return;
    }
  });
}

/// Reads the first directory and the Exif directory that it names; no other is ever visited.
TiffValues valuesOf(const TiffReader& tiff) noexcept {
  TiffValues values;
  std::optional<std::int64_t> exifDirectory;
  tiff.visitEntries(tiff.firstDirectory(), [&](const TiffReader::Entry& entry) {
    constexpr std::int64_t largestOrientation = 8;
    switch (entry.tag) {
      case imageWidthTag:
        return take(values.properties.pixelWidth, tiff.integer(entry));
      case imageLengthTag:
        return take(values.properties.pixelHeight, tiff.integer(entry));
      case orientationTag:
        return take(values.properties.orientation, tiff.integer(entry), largestOrientation);
      case exifDirectoryTag:
        return take(exifDirectory, tiff.integer(entry));
      default:
        return;
    }
  });
  if (exifDirectory) readExifDirectory(tiff, static_cast<std::uint64_t>(*exifDirectory), values);
  return values;
}

TiffValues valuesOf(ByteView exifBlock) noexcept {
  const std::optional<TiffReader> tiff = TiffReader::open(exifBlock);
  return tiff ? valuesOf(*tiff) : TiffValues();
}

std::optional<ByteView> blockAfterExifName(ByteView payload) noexcept {
  const std::size_t name = exifName.size() + 1;
  if (payload.size() < name || !startsWith(payload, exifName)) return std::nullopt;
  return payload.subspan(name);
}

namespace jpeg {

enum Marker : std::uint8_t {
  stuffing = 0x00,  // not a marker but a data byte 0xFF
  temporary = 0x01,
  firstFrame = 0xC0,
  huffmanTables = 0xC4,
  extension = 0xC8,
  arithmeticTables = 0xCC,
  lastFrame = 0xCF,
  firstRestart = 0xD0,
  startOfImage = 0xD8,
  endOfImage = 0xD9,
  startOfScan = 0xDA,
  app1 = 0xE1,
  prefix = 0xFF,  // begins a marker, and fills the room before one
};

bool standsAlone(std::uint8_t marker) noexcept {
  return marker == stuffing || marker == temporary || (marker >= firstRestart && marker <= startOfImage);
}

bool isFrameHeader(std::uint8_t marker) noexcept {
  return marker >= firstFrame && marker <= lastFrame && marker != huffmanTables && marker != extension &&
         marker != arithmeticTables;
}

/// Calls `visit` with marker and payload of every segment before the first scan. Whatever is no segment is
/// passed over byte by byte; a payload that reaches past the end is handed out as far as it goes.
template <typename Visit>
void visitSegments(ByteView file, Visit visit) noexcept {
  constexpr std::uint64_t markerSize = 2;
  const ByteReader reader(file, std::endian::big);
  std::uint64_t at = markerSize;
  while (const auto code = reader.at<std::uint16_t>(at)) {
    const auto marker = static_cast<std::uint8_t>(*code);
    const std::uint16_t length = reader.at<std::uint16_t>(at + markerSize).value_or(0);
    if (*code >> 8 != prefix || marker == prefix) {
      ++at;
    } else if (marker == endOfImage || marker == startOfScan) {
      return;
    } else if (standsAlone(marker) || length < sizeof length) {
      at += markerSize;
    } else {
      visit(marker, reader.view(at + markerSize + sizeof length, length - sizeof length));
      at += markerSize + length;
    }
  }
}

/// ITU-T T.81, B.2.2: sample precision, number of lines, samples per line.
void takeFrameSize(PhotoProperties& into, ByteView frameHeader) noexcept {
  constexpr std::uint64_t linesAt = 1;
  constexpr std::uint64_t samplesAt = 3;
  const ByteReader reader(frameHeader, std::endian::big);
  if (!reader.at<std::uint16_t>(samplesAt)) return;
  take(into.pixelHeight, reader.at<std::uint16_t>(linesAt));
  take(into.pixelWidth, reader.at<std::uint16_t>(samplesAt));
}

PhotoProperties read(ByteView file) noexcept {
  PhotoProperties frame;
  std::optional<TiffValues> exif;
  visitSegments(file, [&](std::uint8_t marker, ByteView payload) {
    if (isFrameHeader(marker)) takeFrameSize(frame, payload);
    if (marker != app1 || exif) return;
    if (const auto block = blockAfterExifName(payload)) exif = valuesOf(*block);
  });
  PhotoProperties properties = exif ? exif->properties : PhotoProperties();
  properties.pixelWidth = frame.pixelWidth;
  properties.pixelHeight = frame.pixelHeight;
  if (exif) take(properties.pixelWidth, exif->pixelXDimension);
  if (exif) take(properties.pixelHeight, exif->pixelYDimension);
  return properties;
}

}  // namespace jpeg

namespace png {

/// Calls `visit` with type and payload of every chunk, as far as the bytes go.
template <typename Visit>
void visitChunks(ByteView file, Visit visit) noexcept {
  constexpr std::uint64_t headerSize = 8;
  constexpr std::uint64_t checksumSize = 4;
  const ByteReader reader(file, std::endian::big);
  std::uint64_t at = pngSignature.size();
  while (const auto length = reader.at<std::uint32_t>(at)) {
    visit(reader.view(at + sizeof *length, 4), reader.view(at + headerSize, *length));
    at += headerSize + *length + checksumSize;
  }
}

PhotoProperties read(ByteView file) noexcept {
  constexpr std::int64_t largestSide = INT32_MAX;
  PhotoProperties header;
  std::optional<TiffValues> exif;
  visitChunks(file, [&](ByteView type, ByteView payload) {
    if (startsWith(type, "IHDR")) {
      const ByteReader reader(payload, std::endian::big);
      take(header.pixelWidth, reader.at<std::uint32_t>(0), largestSide);
      take(header.pixelHeight, reader.at<std::uint32_t>(4), largestSide);
    } else if (startsWith(type, "eXIf") && !exif) {
      // Some writers put the name here too that belongs into a JPEG's segment.
      exif = valuesOf(blockAfterExifName(payload).value_or(payload));
    }
  });
  PhotoProperties properties = exif ? exif->properties : PhotoProperties();
  properties.pixelWidth = header.pixelWidth;
  properties.pixelHeight = header.pixelHeight;
  return properties;
}

}  // namespace png
}  // namespace

std::optional<PhotoProperties> readPhotoProperties(ByteView prefix) noexcept {
  if (startsWith(prefix, jpegSignature)) return jpeg::read(prefix);
  if (startsWith(prefix, pngSignature)) return png::read(prefix);
  if (const auto tiff = TiffReader::open(prefix)) return valuesOf(*tiff).properties;
  return std::nullopt;
}

}  // namespace kestrova::imaging
