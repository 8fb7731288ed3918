#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace kestrova {

/// The work for a number of files of a total size, in bytes: every file costs a little more than its own
/// bytes.
double workOf(std::int64_t files, std::int64_t bytes);

/// Estimates how long the rest of a run takes from its recent speed. One for each run.
class TimeLeft {
 public:
  using Clock = std::chrono::steady_clock;

  /// Notes how much of the whole work is done, and estimates how long the rest takes; nothing while there is
  /// too little to go by. Both are in the same unit.
  std::optional<std::chrono::seconds> guess(double done, double whole, Clock::time_point now);

  /// The time from now to the next guess does not count.
  void pause() { last_.reset(); }

 private:
  using Seconds = std::chrono::duration<double>;
  struct Note {
    Clock::time_point time;
    double done;
  };

  void learn(const Note& note);

  std::optional<Note> last_;
  Seconds worked_{0};  // what the speed is computed from
  double speed_ = 0;   // work a second
};

}  // namespace kestrova
