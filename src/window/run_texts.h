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

/// The text below the progress bar; empty before the first run.
QString progressText(const RunProgress& progress);

/// The window's title.
QString titleText(const RunProgress& progress);

/// A duration in everyday words, without false precision.
QString timeLeftText(std::chrono::seconds left);

/// How many files a run has written, as a sentence.
QString writtenText(std::int64_t files);

/// What the user should know after a run.
struct RunRemainder {
  bool foundNothing = false;
  std::int64_t failed = 0;        ///< files that could not be written
  std::int64_t nameTaken = 0;     ///< not written, as another file of the run has their name
  std::int64_t alreadyThere = 0;  ///< in the target before the run

  bool isSerious() const { return failed > 0 || nameTaken > 0; }
};

/// The remainder in plain words; empty when there is nothing to say.
QString remainderText(const RunRemainder& remainder);

/// Why no run begins: nothing can be written to the target, for this reason in the system's words.
QString unusableTargetText(const QString& reason);

}  // namespace kestrova
