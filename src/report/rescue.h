#pragma once

#include "report/content.h"
#include "report/row.h"
#include "report/work_progress.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova::report {

struct RescueRequest {
  std::vector<Path> sources = {};  ///< folders
  std::vector<Path> files = {};    ///< below one of the sources each
  Path folder;                     ///< where they go
  /// Told of each file once it is there, or is not, as a run's record has it.
  std::function<void(const FileRow&)> record = {};
  Stopped stopped = {};
  ProgressListener progress = {};  ///< files; their bytes are not counted
};

struct RescueFailure {
  Path source;
  std::string reason = {};  ///< in English, in UTF-8
};

struct RescueResult {
  std::int64_t copied = 0;
  std::int64_t alreadyThere = 0;  ///< with the same content, from an earlier time
  std::vector<RescueFailure> failed;
  bool wasStopped = false;
};

/// Copies files as they are, under their paths and names, into one folder for each source, which is named as
/// the source is (a second one of a name gets "-2"). Nothing is overwritten; each file is there whole or not
/// at all, and is read back from the disk and compared before it counts. In the end the names are durable
/// too.
RescueResult rescueFiles(const RescueRequest& request, FileManager& files);

}  // namespace kestrova::report
