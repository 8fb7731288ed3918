#pragma once

#include "report/row_file.h"

namespace kestrova::report {

/// New rows for a file of rows, which take its place all at once or not at all. Calls must not overlap.
class RowReplacement {
 public:
  /// Begins beside the file, in its format. What an earlier attempt left behind is removed.
  static FileResult<RowReplacement> begin(const Path& file);
  RowReplacement(RowReplacement&& other) noexcept = default;
  RowReplacement& operator=(RowReplacement&& other) noexcept = delete;
  ~RowReplacement();

  void add(const Row& row);

  /// Makes the rows durable and puts them in the file's place; the error of a row that could not be added
  /// leaves the file as it was.
  FileResult<void> finish();

 private:
  RowReplacement(std::unique_ptr<RowFile> rows, Path file) : rows_(std::move(rows)), file_(std::move(file)) {}

  std::unique_ptr<RowFile> rows_;
  Path file_;  ///< empty: nothing is left to be removed
};

}  // namespace kestrova::report
