#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrova {

/// What the current run, or the last one, is doing.
enum class RunPhase : std::uint8_t {
  idle,  ///< no run yet
  scanning,
  planning,
  executing,
  ended,
};

/// How a run ends.
enum class RunEnd : std::uint8_t {
  completed,
  stopped,
  outOfSpace,
  error,  ///< an exception
  nothingFound,
};

/// How a run ended, in records and summaries.
constexpr std::string_view wordOf(RunEnd end) {
  switch (end) {
    case RunEnd::completed:
      return "completed";
    case RunEnd::nothingFound:
      return "nothing-to-do";
    case RunEnd::stopped:
      return "stopped";
    case RunEnd::outOfSpace:
    case RunEnd::error:
      return "failed";
  }
  return {};
}

/// How far a run is: one value, so that phase, pause and end always fit together.
struct RunState {
  RunPhase phase = RunPhase::idle;
  bool isPaused = false;           ///< nothing starts until the user continues or stops the run
  bool isHalted = false;           ///< the same: it was an exception that paused it
  std::optional<RunEnd> end = {};  ///< known as soon as the outcome is certain

  bool operator==(const RunState&) const = default;

  bool isRunning() const { return phase != RunPhase::idle && phase != RunPhase::ended; }

  /// Notes how the run will end, unless that is already settled.
  void willEnd(RunEnd how) {
    if (!end) end = how;
  }
  void halt() {
    isPaused = isHalted = true;
    willEnd(RunEnd::error);
  }
  void resume() { isPaused = isHalted = false; }
  /// The user continues a run that an exception halted.
  void forgetError() {
    if (end == RunEnd::error) end.reset();
  }
  /// The run's last operation has ended. If no end was noted and the operations had begun, the run has
  /// completed.
  void finish() {
    willEnd(phase == RunPhase::executing ? RunEnd::completed : RunEnd::error);
    phase = RunPhase::ended;
    resume();
  }
};

}  // namespace kestrova
