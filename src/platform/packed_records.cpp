#include "platform/packed_records.h"

#include <algorithm>

namespace kestrova {

namespace {

constexpr unsigned bitsOfByte = 7;
constexpr std::uint64_t moreFollows = 0x80;

void appendNumber(std::string& bytes, std::uint64_t value) {
  while (value >= moreFollows) {
    bytes += static_cast<char>(value | moreFollows);
    value >>= bitsOfByte;
  }
  bytes += static_cast<char>(value);
}

std::uint64_t numberAt(std::string_view bytes, std::size_t& position) {
  std::uint64_t value = 0;
  for (unsigned shift = 0;; shift += bitsOfByte) {
    const auto byte = static_cast<std::uint8_t>(bytes[position++]);
    value |= (byte & (moreFollows - 1)) << shift;
    if (byte < moreFollows) return value;
  }
}

std::string_view textAt(std::string_view bytes, std::size_t& position) {
  const auto length = static_cast<std::size_t>(numberAt(bytes, position));
  const std::string_view text = bytes.substr(position, length);
  position += length;
  return text;
}

}  // namespace

void PackedRecords::Writer::number(std::uint64_t value) { appendNumber(chunk_.bytes, value); }

// Small negative numbers become small positive ones: 0, -1, 1, -2 are 0, 1, 2, 3.
void PackedRecords::Writer::signedNumber(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  number(value < 0 ? ~(bits << 1) : bits << 1);
}

void PackedRecords::Writer::text(std::string_view bytes) {
  number(bytes.size());
  chunk_.bytes += bytes;
}

// A path is a distance, the folder if that is 0, and the name. The distance is the one back to a folder that
// is there already.
void PackedRecords::Writer::path(std::size_t kind, std::string_view bytes) {
  const auto folder = bytes.substr(0, bytes.rfind('/') + 1);
  std::uint32_t& last = chunk_.folders.at(kind);
  std::size_t position = last - std::size_t{1};
  const std::size_t here = chunk_.bytes.size();
  if (last > 0 && textAt(chunk_.bytes, position) == folder) {
    number(here - (last - 1));
  } else {
    number(0);
    last = static_cast<std::uint32_t>(chunk_.bytes.size() + 1);
    text(folder);
  }
  text(bytes.substr(folder.size()));
}

std::uint64_t PackedRecords::Reader::number() { return numberAt(bytes_, position_); }

std::int64_t PackedRecords::Reader::signedNumber() {
  const std::uint64_t bits = number();
  return static_cast<std::int64_t>((bits & 1) != 0 ? ~(bits >> 1) : bits >> 1);
}

std::string_view PackedRecords::Reader::text() { return textAt(bytes_, position_); }

std::string PackedRecords::Reader::path() {
  const std::size_t here = position_;
  std::size_t folderPosition = here - static_cast<std::size_t>(number());
  const auto folder = folderPosition == here ? text() : textAt(bytes_, folderPosition);
  const auto name = text();
  std::string whole;
  whole.reserve(folder.size() + name.size());
  whole += folder;
  whole += name;
  return whole;
}

PackedRecords::PackedRecords() = default;
PackedRecords::~PackedRecords() = default;

PackedRecords::Writer PackedRecords::append() {
  if (size_ % chunkSize == 0) {
    if (!chunks_.empty() && chunks_.back()) chunks_.back()->bytes.shrink_to_fit();
    chunks_.push_back(std::make_unique<Chunk>());
    chunks_.back()->starts.reserve(chunkSize);
  }
  Chunk& chunk = *chunks_.back();
  chunk.starts.push_back(static_cast<std::uint32_t>(chunk.bytes.size()));
  ++size_;
  return Writer(chunk);
}

PackedRecords::Reader PackedRecords::read(std::size_t index) const {
  const Chunk& chunk = *chunks_[index / chunkSize];
  return {chunk.bytes, chunk.starts[index % chunkSize]};
}

// The last chunk stays while there may be more to append to it.
void PackedRecords::releaseBefore(std::size_t index) {
  const std::size_t first = std::min(index, size_) / chunkSize;
  while (released_ < first) chunks_[released_++].reset();
}

void PackedRecords::clear() {
  chunks_.clear();
  size_ = 0;
  released_ = 0;
}

}  // namespace kestrova
