#pragma once

#include "report/content.h"
#include "report/stand_ins.h"
#include "report/work_progress.h"

#include <functional>
#include <string>
#include <vector>

namespace kestrova::report {

struct VerifyRequest {
  RowSource rows;
  Path target;  ///< of the run
  /// Whether the target has a rewritten version of a photo, as the record of an earlier run proves; absent:
  /// it has none.
  std::function<bool(const Path& photo)> isRewrittenInTarget = {};
  /// Called with every row, in order, with what was found: checksums, and why it is at risk. False ends the
  /// work.
  std::function<bool(const Row&)> tell = {};
  Stopped stopped = {};
  ProgressListener progress = {};  ///< by the source files
};

/// A source file that is not intact in the target.
struct AtRisk {
  Path source;
  std::string reason;      ///< in English, in UTF-8
  bool isReadable = true;  ///< so that it can still be copied
};

struct VerifyResult {
  std::vector<AtRisk> atRisk;
  Amount amount;  ///< of these
  bool wasStopped = false;
};

/// Compares what a run wrote with its sources, reading it back from the disk; decodes the photos that it
/// rewrote; and compares each file that was set aside with the one kept instead of it in the target. Files
/// that are then not intact in the target are at risk, except for what the user's filters left out. Nothing
/// is changed. An error: the rows cannot be read.
FileResult<VerifyResult> verifyRun(const VerifyRequest& request);

}  // namespace kestrova::report
