#pragma once

#include "report/content.h"
#include "report/path_reason.h"
#include "report/work_progress.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova::report {

struct UndoRequest {
  Path rows;    ///< the record's rows
  Path target;  ///< the target folder of the run
  /// Removes a file: into the trash, or for good. Not called in a dry run.
  std::function<FileResult<void>(const Path& file)> discard;
  bool isDryRun = false;
  Stopped stopped = {};
  ProgressListener progress = {};  ///< by the files in the target
};

struct UndoResult {
  std::int64_t removed = 0;         ///< files removed, or that would be
  std::int64_t alreadyGone = 0;     ///< files that an earlier undo, or another program, removed
  std::int64_t folders = 0;         ///< folders removed
  std::vector<PathReason> refused;  ///< targets that stay
  bool wasStopped = false;
};

/// Undoes what a run wrote. A file is removed only if the record says that the run created it, if it is a
/// regular file of the recorded size, time and content, and if its source is still there with the same
/// content; everything else is refused. Then the folders that the run created are removed if they are empty.
/// It may be interrupted anywhere and called again. An error: the rows cannot be read.
FileResult<UndoResult> undoRun(const UndoRequest& request, const FileManager& files);

}  // namespace kestrova::report
