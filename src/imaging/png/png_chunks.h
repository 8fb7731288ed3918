#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kestrova::imaging {

/// One chunk of a PNG file, by where it stands.
struct PngChunk {
  std::size_t offset = 0;    ///< of its length field
  std::uint32_t length = 0;  ///< of its data
  std::string_view type;     ///< four letters, in the file

  std::size_t size() const { return std::size_t{length} + 12; }
  bool isPixels() const { return type == "IDAT"; }
  /// Whether a decoder needs it to make sense of the pixels: upper case in its first letter.
  bool isCritical() const { return (static_cast<unsigned char>(type[0]) & 0x20U) == 0; }
};

/// All chunks up to IEND. Throws ImageError when one is cut off, a checksum is wrong or IEND is missing.
std::vector<PngChunk> pngChunks(ByteView file);

inline ByteView chunkData(ByteView file, const PngChunk& chunk) {
  return file.subspan(chunk.offset + 8, chunk.length);
}

/// Appends a chunk with its checksum.
void appendChunk(Bytes& file, std::string_view type, ByteView data);

}  // namespace kestrova::imaging
