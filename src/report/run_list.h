#pragma once

#include "model/amount.h"
#include "report/run_info.h"

#include <vector>

namespace kestrova::report {

/// A recorded run.
struct RecordedRun {
  RunInfo info;
  bool isGoingOn = false;  ///< its program still writes the record
  Amount written = {};     ///< in the target, in the sizes that it had there
};

/// All recorded runs, the newest first. A record without a readable run.json is skipped.
std::vector<RecordedRun> recordedRuns(const Path& runs, const FileManager& files);

}  // namespace kestrova::report
