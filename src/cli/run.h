#pragma once

#include "cli/organise.h"
#include "cli/progress.h"
#include "cli/report.h"
#include "cli/stop_signals.h"
#include "report/left_behind.h"
#include "report/row_file.h"

#include <memory>
#include <string>
#include <vector>

namespace kestrova::cli {

/// Why the folders cannot be organised, in one line for the user; empty when they can.
std::string unusableFolder(const OrganiseArguments& arguments, const FileManager& files);

/// What a run reports, file by file. Written by its workers: only the tally may be read before the run's end.
struct Findings {
  Tally tally;
  report::LeftBehind leftBehind;
  std::vector<report::UnreadableRow> unreadable;
  std::unique_ptr<report::RowFile> report;  ///< takes all rows; null: nobody wants them
  bool keepsRows = false;
  std::vector<report::Row> rows;  ///< all of them, where they are to be kept

  /// Whether anything is done with rows of files.
  bool takesFileRows() const { return report || keepsRows; }
  void add(const report::Row& row);
  /// Why the report does not hold every row so far.
  std::optional<FileError> reportError() const;
};

/// What the user sees and sends while a run goes on.
struct Terminal {
  StopSignals& stop;
  Progress& progress;
};

/// Organises the folders as the window would, with its controls but no user defaults, and returns when the
/// run has ended. Main thread only; the process's main queue runs meanwhile.
Summary organise(const OrganiseArguments& arguments, std::shared_ptr<FileManager> files,
                 const Terminal& terminal, Findings& findings);

}  // namespace kestrova::cli
