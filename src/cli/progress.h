#pragma once

#include "app/time_left.h"
#include "model/amount.h"
#include "model/run_state.h"

#include <QString>
#include <chrono>
#include <optional>

namespace kestrova::cli {

/// How far a run is.
struct Standing {
  RunPhase phase = RunPhase::scanning;
  QString status = {};                          ///< the status line's text
  Amount found = {};                            ///< what is to be organised, as far as it is known
  std::optional<std::int64_t> duplicates = {};  ///< files, where they are counted
  Amount settled = {};                          ///< of `found`, what is finished
};

/// One line of at most `width` characters: bar, counts, time left, status.
QString progressLine(const Standing& standing, std::optional<std::chrono::seconds> timeLeft, int width);

/// Shows on standard error how far a run is: on a terminal in one line that is redrawn, elsewhere in a new
/// line from time to time.
class Progress {
 public:
  enum class Mode { silent, plain, terminal };
  using Clock = std::chrono::steady_clock;

  /// Without a terminal a line appears every `plainInterval`, the first one after the first interval.
  explicit Progress(Mode mode, Clock::duration plainInterval = std::chrono::seconds(5))
      : mode_(mode), plainInterval_(plainInterval) {}
  /// Removes the drawn line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// What standard error can show.
  static Mode modeOfStandardError();

  void show(const Standing& standing);

 private:
  std::optional<std::chrono::seconds> guess(const Standing& standing);
  void drawLine(const QString& line);
  void addLine(const QString& line);

  Mode mode_;
  Clock::duration plainInterval_;
  Clock::time_point plainTime_ = Clock::now();
  TimeLeft timeLeft_;
  bool isDrawn_ = false;
};

}  // namespace kestrova::cli
