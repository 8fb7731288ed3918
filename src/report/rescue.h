#pragma once

#include "report/content.h"
#include "report/path_reason.h"
#include "report/row.h"
#include "report/work_progress.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova::report {

struct RescueRequest {
  std::vector<Path> sources = {};  ///< folders
  std::vector<Path> files = {};    ///< each below one of the sources
  Path folder;                     ///< where they go
  /// Called for each file once it is copied or refused, with its row for the record.
  std::function<void(const FileRow&)> record = {};
  Stopped stopped = {};
  ProgressListener progress = {};  ///< files; their bytes are not counted
};

struct RescueResult {
  std::int64_t copied = 0;
  std::int64_t alreadyThere = 0;  ///< with the same content, from an earlier rescue
  std::vector<PathReason>
      failed;  ///< sources; the rescue folder itself where names could not be made durable
  bool wasStopped = false;
};

/// Copies files as they are, under their paths and names, into one folder for each source, which is named
/// like the source (a second one of the same name gets "-2"). Nothing is overwritten; each file is there
/// completely or not at all, and is read back from the disk and compared before it counts. In the end the
/// names are durable too.
RescueResult rescueFiles(const RescueRequest& request, FileManager& files);

}  // namespace kestrova::report
