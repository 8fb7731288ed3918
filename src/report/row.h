#pragma once

#include "model/outcome.h"
#include "platform/file_manager.h"

#include <QJsonObject>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// The rows of a run's record: one JSON object a line (ndjson, UTF-8).
namespace kestrova::report {

/// What became of one source file. Texts are empty and numbers absent if a row does not have them.
struct FileRow {
  Path source;
  Outcome verdict = Outcome::copied;
  std::optional<Path> target = {};               ///< relative to the target folder, if it lies below it
  std::optional<std::uint64_t> sourceSize = {};  ///< bytes
  std::optional<std::uint64_t> targetSize = {};  ///< bytes
  std::string sourceModified = {};               ///< nanoseconds since 1970, in decimal
  std::string targetModified = {};               ///< the same
  std::string date = {};                         ///< local time, as used for the name: 2014-05-21T13:45:02
  std::string dateFrom = {};                     ///< digitised, modified or run-start
  std::optional<Path> original = {};             ///< the source kept instead of a duplicate
  std::string sourceSha256 = {};
  std::string targetSha256 = {};
  std::string atRisk = {};  ///< why the file is not whole in the target
  std::string reason = {};  ///< of a failure, in the system's words
  int pagesLeftOut = 0;     ///< of a TIFF
  std::vector<Path> createdFolders =
      {};  ///< for this file, relative to the target folder, the outermost first
};

/// A folder or a file that could not be read.
struct UnreadableRow {
  Path source;
  std::string reason = {};
};

/// A file that is neither a photo nor a video, or of a kind that the run was not asked to take.
struct LeftBehindRow {
  Path source;
  std::string extension = {};  ///< in lower case, without its dot
  std::uint64_t sourceSize = 0;
};

using Row = std::variant<FileRow, UnreadableRow, LeftBehindRow>;

/// A row's keys and values.
QJsonObject jsonOf(const Row& row);

/// One line, with its line end.
std::string lineOf(const Row& row);

/// The row on a line; nothing for a line that is not a row, or of a kind that this version does not know.
std::optional<Row> rowOf(std::string_view line);

/// Reads the rows of a record in their order; false from `visit` ends it. A last line without its line end,
/// as a crash leaves it, is ignored. Lines are read one by one: records may be larger than memory.
FileResult<void> readRows(const Path& file, const std::function<bool(const Row&)>& visit);

}  // namespace kestrova::report
