#pragma once

#include "model/amount.h"
#include "report/last_rows.h"
#include "report/row.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>

namespace kestrova::report {

/// Visits the rows of a run in order, as readRows does; may be called several times.
using RowSource = std::function<FileResult<void>(const std::function<bool(const Row&)>& visit)>;

/// Whether a run rewrote the row's target instead of copying the source unchanged.
bool isRewritten(const FileRow& row);
/// Whether the run wrote the row's target.
bool isWritten(const FileRow& row);

/// What became of a file that was kept instead of others.
struct StandIn {
  FileRow row;
  bool isLast = true;  ///< no later row of the run wrote over its target
};

/// How the rows of a run refer to each other. Only rows that others refer to, and the names of written files,
/// are kept in memory.
class StandIns {
 public:
  /// Reads the rows twice.
  static FileResult<StandIns> of(const RowSource& rows);

  /// The source files of all rows.
  Amount sizeOfAll() const { return sizeOfAll_; }

  /// Whether no later row wrote over the row's target. `number` counts the rows of files from 0.
  bool isLast(const FileRow& row, std::size_t number) const;

  /// The row of a file that was kept instead of others; null if there is none.
  const StandIn* find(const Path& original) const;

 private:
  Amount sizeOfAll_;
  LastRows lastRows_;                                  ///< by their numbers among the rows of files
  std::unordered_map<std::string, StandIn> standIns_;  ///< by source
};

}  // namespace kestrova::report
