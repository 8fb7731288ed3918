#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace kestrova {

/// The work of so many files of so many bytes together, in bytes: every file costs a little beside its own.
double workOf(std::int64_t files, std::int64_t bytes);

/// Guesses how long the rest of a run takes from how fast it has gone lately. One for each run.
class TimeLeft {
 public:
  using Clock = std::chrono::steady_clock;

  /// Takes note of what is done of the whole work by now, and says how long the rest takes; nothing as long
  /// as there is too little to judge by. Work is counted in any one unit.
  std::optional<std::chrono::seconds> guess(double done, double whole, Clock::time_point now);

  /// The time from here to the next guess does not count.
  void pause() { last_.reset(); }

 private:
  using Seconds = std::chrono::duration<double>;
  struct Note {
    Clock::time_point time;
    double done;
  };

  void learn(const Note& note);

  std::optional<Note> last_;
  Seconds worked_{0};  // what the speed is learnt from
  double speed_ = 0;   // work a second
};

}  // namespace kestrova
