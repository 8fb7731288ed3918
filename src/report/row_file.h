#pragma once

#include "platform/append_file.h"
#include "report/row.h"

#include <optional>

namespace kestrova::report {

/// A growing file of rows: each is written when it is added, in one piece. Calls must not overlap.
class RowFile {
 public:
  enum class Format { ndjson, csv };

  /// By the extension of the file's name: .ndjson or .csv; nothing for any other.
  static std::optional<Format> formatOf(const Path& file);

  /// Creates the file in an existing folder, readable by its user only. Fails with EEXIST when the name is
  /// taken.
  static FileResult<RowFile> create(const Path& file, Format format);

  /// After a failure nothing is added any more, so that the file stays readable to its last whole line.
  void add(const Row& row);

  /// The failure.
  const std::optional<FileError>& error() const { return error_; }

 private:
  RowFile(AppendFile file, Format format) : file_(std::move(file)), format_(format) {}
  void append(const std::string& line);

  AppendFile file_;
  Format format_;
  std::optional<FileError> error_;
};

}  // namespace kestrova::report
