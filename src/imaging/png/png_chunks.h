#pragma once

#include "imaging/base/byte_reader.h"
#include "imaging/base/interruption.h"
#include "platform/bytes.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestrova::imaging {

/// The signature at the start of a PNG file.
inline constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";

/// One chunk of a PNG file: four bytes of length, four of type, the data, four of checksum.
struct PngChunk {
  std::string_view type;  ///< four letters
  std::uint32_t length;   ///< of the data, as stated
  ByteView data;          ///< less than that where the file is cut off
  ByteView whole;         ///< from the length to the checksum, as far as the file goes

  bool isCutOff() const { return whole.size() < std::size_t{length} + 12; }
};

/// Calls `visit` with every chunk up to IEND, as far as the file goes. Allocates nothing.
template <typename Visit>
void visitPngChunks(ByteView file, Visit visit) {
  const ByteReader reader(file, std::endian::big);
  std::uint64_t position = pngSignature.size();
  while (reader.at<std::uint64_t>(position)) {
    const std::uint32_t length = *reader.at<std::uint32_t>(position);
    const ByteView type = reader.view(position + 4, 4);
    const PngChunk chunk{.type = {reinterpret_cast<const char*>(type.data()), type.size()},
                         .length = length,
                         .data = reader.view(position + 8, length),
                         .whole = reader.view(position, std::uint64_t{length} + 12)};
    visit(chunk);
    if (chunk.type == "IEND") return;
    position += std::uint64_t{length} + 12;
  }
}

/// Throws ImageError when a chunk up to IEND is cut off or has a wrong checksum, or IEND is missing; throws
/// Interrupted.
void requireWholePng(ByteView file, const Stopped& stopped = {});

/// Appends a chunk with its checksum.
void appendChunk(Bytes& file, std::string_view type, ByteView data);

}  // namespace kestrova::imaging
