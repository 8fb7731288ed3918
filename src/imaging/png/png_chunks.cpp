#include "imaging/png/png_chunks.h"

#include "imaging/base/byte_reader.h"
#include "imaging/base/image_error.h"

#include <zlib.h>

namespace kestrova::imaging {

namespace {

constexpr std::size_t signatureBytes = 8;

void appendNumber32(Bytes& file, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8)
    file.push_back(static_cast<std::uint8_t>(number >> shift & 0xFF));
}

std::uint32_t checksum(ByteView typeAndData) {
  return static_cast<std::uint32_t>(crc32_z(0, typeAndData.data(), typeAndData.size()));
}

}  // namespace

std::vector<PngChunk> pngChunks(ByteView file) {
  std::vector<PngChunk> chunks;
  std::size_t position = signatureBytes;
  const ByteReader reader(file, std::endian::big);
  while (file.size() >= position + 12) {
    const PngChunk chunk{position,
                         *reader.at<std::uint32_t>(position),
                         {reinterpret_cast<const char*>(file.data()) + position + 4, 4}};
    if (chunk.length > file.size() - position - 12) break;
    const ByteView checked = file.subspan(position + 4, std::size_t{chunk.length} + 4);
    if (checksum(checked) != reader.at<std::uint32_t>(position + 8 + chunk.length)) {
      throw ImageError("a PNG checksum is wrong");
    }
    chunks.push_back(chunk);
    if (chunk.type == "IEND") return chunks;
    position += chunk.size();
  }
  throw ImageError("the PNG is cut off");
}

void appendChunk(Bytes& file, std::string_view type, ByteView data) {
  appendNumber32(file, static_cast<std::uint32_t>(data.size()));
  const std::size_t checked = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), data.begin(), data.end());
  appendNumber32(file, checksum(ByteView(file).subspan(checked)));
}

}  // namespace kestrova::imaging
