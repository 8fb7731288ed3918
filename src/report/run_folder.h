#pragma once

#include "platform/file_manager.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kestrova::report {

/// How many records are kept.
constexpr std::size_t keptRuns = 50;

/// Where the records of runs are kept: $XDG_STATE_HOME/kestrova/runs, by default below ~/.local/state
/// (freedesktop.org's base directories). Nothing when the environment names no absolute folder.
std::optional<Path> runsFolder();

/// Creates a folder for the record of a run, readable by its user only, and what is missing above it. Its
/// name, the run's id, is the start in UTC, as 20261121T101502Z; if that is taken, with -2, -3 and so on.
FileResult<Path> createRunFolder(const Path& runs, std::chrono::sys_seconds start);

/// The ids of all records, the newest first. Anything else in the folder is ignored.
std::vector<std::string> runIds(const Path& runs);

/// Removes the oldest records until `kept` are left; one that is still being written is kept.
void removeOldRuns(const Path& runs, std::size_t kept = keptRuns);

/// The files of a record.
Path infoFile(const Path& run);
Path rowsFile(const Path& run);

}  // namespace kestrova::report
