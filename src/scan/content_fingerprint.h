#pragma once

#include "platform/file_manager.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kestrova {

/// How much of a file its fingerprint and its properties are taken from, in bytes.
constexpr std::size_t prefixLength = 40960;

/// What a file's first bytes come to.
struct Fingerprint {
  std::string digits;          ///< those of no bytes where the file cannot be read
  std::string readError = {};  ///< why it cannot be read, in UTF-8
};
Fingerprint readFingerprint(const FileManager& files, const Path& path);

/// The MD5 digest (RFC 1321) as 32 lowercase hexadecimal digits. Absent bytes count as none.
std::string contentFingerprint(const std::optional<Bytes>& prefix);

}  // namespace kestrova
