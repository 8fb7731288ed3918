#pragma once

#include "cli/stop_signals.h"
#include "report/rescue.h"

#include <vector>

namespace kestrova::cli {

struct RescueTask {
  std::vector<Path> sources;
  std::vector<Path> files;  ///< below the sources
  Path folder;
};

/// Copies the files as they are and keeps a record of it, as of a run. Shows how far it is; ends on Ctrl-C.
report::RescueResult rescue(const RescueTask& task, FileManager& files, const StopSignals& stop);

}  // namespace kestrova::cli
