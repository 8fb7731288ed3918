#pragma once

#include "platform/file_manager.h"

#include <QJsonObject>
#include <optional>
#include <string>
#include <vector>

namespace kestrova::report {

/// What a record says about its run as a whole: run.json. Times are UTC, as 2026-11-21T10:15:02Z.
struct RunInfo {
  std::string id = {};       ///< the name of the record's folder; not in the file
  std::string version = {};  ///< of the program
  std::string command = {};  ///< organise or rescue
  QJsonObject options;       ///< by their names on the command line, in camel case
  std::vector<Path> sources = {};
  Path target;
  std::string started = {};
  std::string ended = {};      ///< empty while the run goes on, and if it was interrupted
  std::string result = {};     ///< completed, nothing-to-do, stopped or failed; empty like `ended`
  std::string takenBack = {};  ///< when an undo left nothing of what the run wrote; empty before
  QJsonObject counts;  ///< {"files":n,"bytes":n} by verdict, and of left-behind and unreadable-folders
  std::string recordError = {};  ///< why the rows end before the run did, in the system's words
};

/// Writes run.json into the record's folder, whole or not at all.
FileResult<void> writeRunInfo(FileManager& files, const Path& run, const RunInfo& info);

/// Reads it; nothing if there is none or it is damaged.
std::optional<RunInfo> readRunInfo(const FileManager& files, const Path& run);

}  // namespace kestrova::report
