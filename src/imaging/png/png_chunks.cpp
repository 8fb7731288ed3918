#include "imaging/png/png_chunks.h"

#include "imaging/base/image_error.h"

#include <algorithm>

#include <zlib.h>

namespace kestrova::imaging {

namespace {

void appendNumber32(Bytes& file, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8)
    file.push_back(static_cast<std::uint8_t>(number >> shift & 0xFF));
}

std::uint32_t checksum(ByteView typeAndData, const Stopped& stopped = {}) {
  constexpr std::size_t most = 1'000'000;  // between two looks at `stopped`
  unsigned long sum = 0;
  for (ByteView rest = typeAndData; !rest.empty(); rest = rest.subspan(std::min(rest.size(), most))) {
    throwIfStopped(stopped);
    sum = crc32_z(sum, rest.data(), std::min(rest.size(), most));
  }
  return static_cast<std::uint32_t>(sum);
}

void requireSound(const PngChunk& chunk, const Stopped& stopped) {
  if (chunk.isCutOff()) throw ImageError("the PNG is cut off");
  const ByteView checked = chunk.whole.subspan(4, chunk.data.size() + 4);
  const ByteReader reader(chunk.whole, std::endian::big);
  if (checksum(checked, stopped) != reader.at<std::uint32_t>(8 + chunk.data.size())) {
    throw ImageError("a PNG checksum is wrong");
  }
}

}  // namespace

void requireWholePng(ByteView file, const Stopped& stopped) {
  bool hasEnd = false;
  visitPngChunks(file, [&](const PngChunk& chunk) {
    requireSound(chunk, stopped);
    hasEnd = chunk.type == "IEND";
  });
  if (!hasEnd) throw ImageError("the PNG is cut off");
}

void appendChunk(Bytes& file, std::string_view type, ByteView data) {
  appendNumber32(file, static_cast<std::uint32_t>(data.size()));
  const std::size_t checked = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), data.begin(), data.end());
  appendNumber32(file, checksum(ByteView(file).subspan(checked)));
}

}  // namespace kestrova::imaging
