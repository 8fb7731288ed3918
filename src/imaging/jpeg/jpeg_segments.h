#pragma once

#include "platform/bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// ITU-T T.81, table B.1.
namespace jpeg_marker {

enum Marker : std::uint8_t {
  stuffing = 0x00,  ///< not a marker but a data byte 0xFF
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
  app0 = 0xE0,
  app1 = 0xE1,
  app2 = 0xE2,
  lastApplication = 0xEF,
  comment = 0xFE,
  fill = 0xFF,
};

}  // namespace jpeg_marker

/// One marker of a JPEG and the segment that it begins. A marker that has no segment, or states an impossible
/// length, has a payload of 0 bytes.
struct JpegSegment {
  std::uint8_t marker = 0;
  std::size_t offset = 0;  ///< of the payload, in the file
  std::size_t length =
      0;  ///< of the payload, as stated: it may reach past the end of a file that was cut off

  bool isFrameHeader() const noexcept;
  /// An application segment or a comment: it holds no pixels.
  bool isMetadata() const noexcept {
    return (marker >= jpeg_marker::app0 && marker <= jpeg_marker::lastApplication) ||
           marker == jpeg_marker::comment;
  }
  /// The payload, as far as the file goes.
  ByteView in(ByteView file) const noexcept {
    const std::size_t start = std::min(offset, file.size());
    return file.subspan(start, std::min(length, file.size() - start));
  }
};

/// Walks over the markers of a JPEG file that follow its start-of-image marker. The file may be cut off
/// anywhere and contain anything: fill bytes, coded pixels, garbage and anything else that is not a marker
/// are skipped. Allocates nothing. Does not own the bytes.
class JpegWalker {
 public:
  explicit JpegWalker(ByteView file) noexcept : file_(file) {}

  /// The next marker; nothing at the end of the bytes.
  std::optional<JpegSegment> next() noexcept;

 private:
  ByteView file_;
  std::size_t position_ = 2;
};

/// The most bytes that a segment's payload may have.
inline constexpr std::size_t mostPayloadBytes = 0xFFFF - 2;

/// Appends a segment: marker, length, payload, which has at most `mostPayloadBytes`.
void appendSegment(Bytes& file, std::uint8_t marker, ByteView payload);

}  // namespace kestrova::imaging
