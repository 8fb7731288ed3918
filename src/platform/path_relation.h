#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace kestrova {

/// Whether a path is that of the folder or of something below it, by their names alone.
inline bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder) {
  const auto end =
      folder.has_filename() ? folder.end() : std::prev(folder.end());  // "a/" ends in an empty name
  return std::mismatch(folder.begin(), end, path.begin(), path.end()).first == end;
}

/// A path without symbolic links, "." and "..", as far as it exists.
inline std::filesystem::path resolvedPath(const std::filesystem::path& path) {
  std::error_code error;
  auto resolved = std::filesystem::weakly_canonical(path, error);
  return error ? path : resolved;
}

}  // namespace kestrova
