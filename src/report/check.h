#pragma once

#include "report/content.h"
#include "report/left_behind.h"
#include "report/path_reason.h"
#include "report/work_progress.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova::report {

struct CheckRequest {
  std::vector<Path> sources;  ///< folders
  Path target;                ///< a folder, not inside any source
  /// Whether the target has a rewritten version of a photo, as a run's record proves; absent: it has none.
  std::function<bool(const Path& photo)> isRewrittenInTarget = {};
  /// Called for each file that is neither photo nor video, if set.
  std::function<void(const Path& file)> leavesBehind = {};
  Stopped stopped = {};
  ProgressListener progress = {};  ///< while folders are listed, by their files; then by the source files
};

struct CheckResult {
  std::int64_t files = 0;           ///< photos and videos in the sources
  std::int64_t safe = 0;            ///< those whose exact bytes are in the target
  std::vector<PathReason> missing;  ///< files of the sources that the target does not hold
  std::vector<PathReason>
      unreadable;         ///< folders and files that could not be read: their contents are unknown
  LeftBehind leftBehind;  ///< files that are neither photo nor video
  bool wasStopped = false;

  bool isSafe() const { return !wasStopped && missing.empty() && unreadable.empty(); }
};

/// Looks for each photo and video in the sources for a file with exactly its bytes in the target: by size
/// first, then byte by byte; each byte in the target is read at most once. Names and dates do not matter. A
/// link in the target, or another name of the source itself, is not a copy. Nothing is written.
CheckResult checkSources(const CheckRequest& request);

}  // namespace kestrova::report
