#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kestrova {

/// How much of a file its fingerprint and its properties are taken from, in bytes.
constexpr std::size_t prefixLength = 40960;

/// The MD5 digest (RFC 1321) as 32 lowercase hexadecimal digits. Absent bytes count as none.
std::string contentFingerprint(const std::optional<Bytes>& prefix);

}  // namespace kestrova
