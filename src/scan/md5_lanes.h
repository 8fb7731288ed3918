#pragma once

#include "platform/bytes.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace kestrova {

using Md5Digest = std::array<std::uint8_t, 16>;

/// The MD5 digests (RFC 1321) of several messages, which are digested side by side: a processor that adds 8
/// or 16 numbers at once takes about as long for as many messages as for one.
std::vector<Md5Digest> md5DigestsOf(std::span<const ByteView> messages);

}  // namespace kestrova
