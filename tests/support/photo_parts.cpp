#include "support/photo_parts.h"

#include <algorithm>
#include <stdexcept>

#include <zlib.h>

namespace kestrova::test {
namespace {

constexpr std::size_t afterStart = 2;
constexpr std::size_t afterHeader = 8 + 25;

/// Where the scan's header starts in a JPEG that starts with SOI and has nothing unusual before it.
std::size_t startOfScan(const Bytes& jpeg) {
  constexpr std::uint8_t sos = 0xDA;
  std::size_t at = 2;
  while (jpeg.at(at + 1) != sos) at += 2 + std::size_t{jpeg.at(at + 2)} * 256 + jpeg.at(at + 3);
  return at;
}

/// Segments and fill bytes of this total size, which a decoder skips.
Bytes jpegPadding(std::size_t size) {
  constexpr std::uint8_t comment = 0xFE;
  constexpr std::size_t smallest = 4;
  constexpr std::size_t largest = 2 + 0xFFFF;
  Bytes padding;
  while (size - padding.size() >= smallest) {
    const std::size_t segment = std::min(size - padding.size(), largest);
    append(padding, jpegSegment(comment, Bytes(segment - smallest, ' ')));
  }
  padding.resize(size, 0xFF);
  return padding;
}

Bytes inserted(const Bytes& photo, std::size_t at, const std::vector<Bytes>& parts) {
  const auto place = photo.begin() + static_cast<std::ptrdiff_t>(at);
  return joined({{photo.begin(), place}, joined(parts), {place, photo.end()}});
}

}  // namespace

void append(Bytes& to, ByteView bytes) {
  to.resize(to.size() + bytes.size());
  std::ranges::copy(bytes, to.end() - std::ssize(bytes));
}

void appendText(Bytes& to, std::string_view text) { to.insert(to.end(), text.begin(), text.end()); }

void appendBigEndian(Bytes& to, std::uint64_t value, int bytes) {
  while (bytes-- > 0) to.push_back(static_cast<std::uint8_t>(value >> 8 * bytes));
}

Bytes joined(const std::vector<Bytes>& parts) {
  Bytes whole;
  for (const Bytes& part : parts) append(whole, part);
  return whole;
}

Bytes jpegSegment(std::uint8_t marker, ByteView payload) {
  Bytes segment{0xFF, marker};
  if (payload.size() > 0xFFFD) throw std::length_error("a JPEG segment holds 65533 bytes");
  appendBigEndian(segment, payload.size() + 2, 2);
  append(segment, payload);
  return segment;
}

Bytes exifSegment(ByteView block) {
  Bytes payload{'E', 'x', 'i', 'f', 0, 0};
  append(payload, block);
  return jpegSegment(0xE1, payload);
}

Bytes pngChunk(const std::string& type, ByteView payload) {
  Bytes chunk;
  appendBigEndian(chunk, payload.size(), 4);
  appendText(chunk, type);
  append(chunk, payload);
  appendBigEndian(chunk, crc32(0, chunk.data() + 4, static_cast<uInt>(chunk.size() - 4)), 4);
  return chunk;
}

Bytes withSegments(const Bytes& jpeg, const std::vector<Bytes>& segments) {
  return inserted(jpeg, afterStart, segments);
}

Bytes withChunks(const Bytes& png, const std::vector<Bytes>& chunks) {
  return inserted(png, afterHeader, chunks);
}

Bytes paddedJpeg(const Bytes& jpeg, std::size_t size) {
  if (jpeg.size() > size) throw std::length_error("the photo is longer than that");
  return inserted(jpeg, startOfScan(jpeg), {jpegPadding(size - jpeg.size())});
}

Bytes withHeaderSize(const Bytes& png, std::uint32_t width, std::uint32_t height) {
  Bytes header;
  appendBigEndian(header, width, 4);
  appendBigEndian(header, height, 4);
  header.insert(header.end(), png.begin() + 24, png.begin() + 29);
  Bytes claiming = png;
  std::ranges::copy(pngChunk("IHDR", header), claiming.begin() + 8);
  return claiming;
}

Bytes withFrameSize(const Bytes& jpeg, unsigned width, unsigned height) {
  const Bytes header{0xFF, 0xC0, 0x00, 0x11, 0x08};
  const auto found = std::ranges::search(jpeg, header);
  if (found.empty()) throw std::invalid_argument("no baseline JPEG of three components");
  Bytes claiming(jpeg.begin(), found.end());
  appendBigEndian(claiming, height, 2);
  appendBigEndian(claiming, width, 2);
  claiming.insert(claiming.end(), found.end() + 4, jpeg.end());
  return claiming;
}

}  // namespace kestrova::test
