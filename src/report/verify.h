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
  /// Whether a photo stands in the target rewritten, as the record of an earlier run proves; absent: none
  /// does.
  std::function<bool(const Path& photo)> isRewrittenInTarget = {};
  /// Told of every row, in their order, with what was found: sums, and why it is at risk. False ends the
  /// work.
  std::function<bool(const Row&)> tell = {};
  Stopped stopped = {};
  ProgressListener progress = {};  ///< by the source files
};

/// A source file that is not whole in the target.
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
/// rewrote; and compares each file that was set aside with the one that stands for it in the target. What is
/// then not whole in the target is at risk, except for what the user's filters left out. Nothing is changed.
/// An error: the rows cannot be read.
FileResult<VerifyResult> verifyRun(const VerifyRequest& request);

}  // namespace kestrova::report
