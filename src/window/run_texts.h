#pragma once

#include "model/run_state.h"

#include <QString>
#include <chrono>
#include <cstdint>
#include <optional>

namespace kestrova {

/// How far a run is.
struct RunProgress {
  RunState run;
  std::int64_t found = 0;  ///< files to organise
  std::int64_t done = 0;   ///< of these

  /// Whole percents done; nothing before the number of files is known.
  std::optional<std::int64_t> percent() const {
    return run.phase == RunPhase::executing && found > 0 ? std::optional(100 * done / found) : std::nullopt;
  }
};

// All in the user's language and digits.

/// What stands below the progress bar; empty before the first run.
QString progressText(const RunProgress& progress);

/// The window's title.
QString titleText(const RunProgress& progress);

/// A time as one says it, without false precision.
QString timeLeftText(std::chrono::seconds left);

/// How many files a run has written, as a sentence.
QString writtenText(std::int64_t files);

/// What a run that has ended leaves for the user to know.
struct RunRemainder {
  bool foundNothing = false;
  std::int64_t failed = 0;        ///< files that could not be written
  std::int64_t nameTaken = 0;     ///< not written, as their name had been given to another file meanwhile
  std::int64_t alreadyThere = 0;  ///< in the target before the run

  bool isSerious() const { return failed > 0 || nameTaken > 0; }
};

/// It in plain words; empty when there is nothing to say.
QString remainderText(const RunRemainder& remainder);

}  // namespace kestrova
