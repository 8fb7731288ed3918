#pragma once

#include "cli/organise.h"
#include "cli/progress.h"
#include "cli/report.h"
#include "cli/stop_signals.h"

#include <string>

namespace kestrova::cli {

/// Why the folders cannot be organised, in one line for the user; empty when they can.
std::string unusableFolder(const OrganiseArguments& arguments, const FileManager& files);

/// Organises the folders as the window would, with its controls but no user defaults, and returns when the
/// run has ended. Every file's fate goes into the tally. Main thread only; the process's main queue runs
/// meanwhile.
Summary organise(const OrganiseArguments& arguments, std::shared_ptr<FileManager> files, StopSignals& stop,
                 Progress& progress, Tally& tally);

}  // namespace kestrova::cli
