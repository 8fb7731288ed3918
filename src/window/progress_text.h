#pragma once

#include <QString>
#include <cstdint>

namespace kestrova {

/// How far a run is.
struct RunProgress {
  enum class Stage { none, scanning, planning, executing };
  Stage stage = Stage::none;
  std::int64_t found = 0;  ///< files to organise
  std::int64_t done = 0;   ///< of these
};

/// What stands beside the progress bar, in the user's language and digits; empty before the first run.
QString progressText(const RunProgress& progress);

}  // namespace kestrova
