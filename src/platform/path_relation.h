#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace kestrova {

/// Whether a path is that of the folder or of something below it, by their names alone.
inline bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder) {
  const auto end =
      folder.has_filename() ? folder.end() : std::prev(folder.end());  // "a/" ends in an empty name
  return std::mismatch(folder.begin(), end, path.begin(), path.end()).first == end;
}

/// "/a/b" for "/a/b/".
inline std::filesystem::path withoutFinalSlash(const std::filesystem::path& path) {
  return path.has_filename() ? path : path.parent_path();
}

/// The names below the folder that lead to the path, by their names alone; the path itself if it is not
/// below.
inline std::filesystem::path relativeTo(const std::filesystem::path& folder,
                                        const std::filesystem::path& path) {
  std::string_view rest = path.native();
  const std::string& prefix = folder.native();
  if (!rest.starts_with(prefix)) return path;
  rest.remove_prefix(prefix.size());
  const bool isBelow = rest.starts_with('/') || prefix.ends_with('/');
  if (!isBelow) return path;
  rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
  return rest;
}

/// A path without symbolic links, "." and "..", as far as it exists.
inline std::filesystem::path resolvedPath(const std::filesystem::path& path) {
  std::error_code error;
  auto resolved = std::filesystem::weakly_canonical(path, error);
  return error ? path : resolved;
}

}  // namespace kestrova
