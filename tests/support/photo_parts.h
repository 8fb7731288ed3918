#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The parts of photos, and photos with other parts.

namespace kestrova::test {

void append(Bytes& to, ByteView bytes);
void appendText(Bytes& to, std::string_view text);
void appendBigEndian(Bytes& to, std::uint64_t value, int bytes);
/// These bytes, one after the other.
Bytes joined(const std::vector<Bytes>& parts);

/// A JPEG segment: marker, length, payload.
Bytes jpegSegment(std::uint8_t marker, ByteView payload);
/// A JPEG's Exif segment around this block.
Bytes exifSegment(ByteView block);
/// A PNG chunk: length, type, payload, checksum.
Bytes pngChunk(const std::string& type, ByteView payload);

/// The same JPEG with these segments after its start, before all others.
Bytes withSegments(const Bytes& jpeg, const std::vector<Bytes>& segments);
/// The same PNG with these chunks after its header.
Bytes withChunks(const Bytes& png, const std::vector<Bytes>& chunks);

/// The same JPEG, made exactly `size` bytes long by comments between its frame header and its pixels; it
/// decodes as before. Throws if it is already longer.
Bytes paddedJpeg(const Bytes& jpeg, std::size_t size);

/// The same PNG, whose header claims another size.
Bytes withHeaderSize(const Bytes& png, std::uint32_t width, std::uint32_t height);

/// The same baseline JPEG, whose frame header claims another size.
Bytes withFrameSize(const Bytes& jpeg, unsigned width, unsigned height);

}  // namespace kestrova::test
