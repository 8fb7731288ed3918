#pragma once

#include "platform/file_manager.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kestrova {

/// How many bytes of a file its fingerprint and its properties are computed from.
constexpr std::size_t prefixLength = 40960;

/// The fingerprint of a file's first bytes.
struct Fingerprint {
  std::string digits;          ///< those of no bytes if the file cannot be read
  std::string readError = {};  ///< why it cannot be read, in UTF-8
};
Fingerprint readFingerprint(const FileManager& files, const Path& path);
/// The same of several files, in their order. Much faster than one by one: see md5DigestsOf.
std::vector<Fingerprint> readFingerprints(const FileManager& files, const std::vector<Path>& paths);

/// The MD5 digest (RFC 1321) as 32 lowercase hexadecimal digits. Absent bytes count as none.
std::string contentFingerprint(const std::optional<Bytes>& prefix);

}  // namespace kestrova
