#include "imaging/jpeg/jpeg_properties.h"

#include "imaging/base/begins_with.h"
#include "imaging/base/byte_reader.h"
#include "imaging/exif/exif_block.h"
#include "imaging/exif/exif_values.h"

#include <bit>
#include <cstdint>
#include <optional>

namespace kestrova::imaging {

namespace {

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
  takeNumber(into.pixelHeight, reader.at<std::uint16_t>(linesAt));
  takeNumber(into.pixelWidth, reader.at<std::uint16_t>(samplesAt));
}

}  // namespace

bool beginsLikeJpeg(ByteView file) noexcept { return beginsWith(file, "\xFF\xD8\xFF"); }

PhotoProperties readJpegProperties(ByteView file) noexcept {
  PhotoProperties frame;
  std::optional<ExifValues> exif;
  visitSegments(file, [&](std::uint8_t marker, ByteView payload) {
    if (isFrameHeader(marker)) takeFrameSize(frame, payload);
    if (marker != app1 || exif) return;
    if (const std::size_t name = exifNameLength(payload)) exif = readExif(payload.subspan(name));
  });
  PhotoProperties properties = exif ? exif->properties : PhotoProperties();
  properties.pixelWidth = frame.pixelWidth;
  properties.pixelHeight = frame.pixelHeight;
  if (exif) takeNumber(properties.pixelWidth, exif->pixelXDimension);
  if (exif) takeNumber(properties.pixelHeight, exif->pixelYDimension);
  return properties;
}

}  // namespace kestrova::imaging
