#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kestrova::report {

/// Writes one JSON object as one line. A record has a line for every file, and documents of
/// QJsonDocument take many times as long. Keys are ASCII.
class JsonLine {
 public:
  JsonLine() { line_.reserve(usualLength); }

  /// What is not UTF-8 is lossy.
  void putText(std::string_view key, std::string_view text);
  void putNumber(std::string_view key, std::uint64_t number);
  /// As putPath of json_path.h does.
  void putPath(std::string_view key, const Path& path);
  /// An array of objects, each with a path under "path".
  void putPaths(std::string_view key, std::span<const Path> paths);

  /// The line with its end; nothing may be put after this.
  std::string finish() &&;

 private:
  std::string takeObject();
  void putKey(std::string_view key);
  void appendText(std::string_view text);

  static constexpr std::size_t usualLength = 512;

  std::string line_ = "{";
};

}  // namespace kestrova::report
