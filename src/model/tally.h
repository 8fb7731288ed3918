#pragma once

#include "model/verdict.h"
#include "platform/mutex.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kestrova {

/// So many files of so many bytes together.
struct Amount {
  std::int64_t files = 0;
  std::int64_t bytes = 0;

  Amount& operator+=(const Amount& other) {
    files += other.files;
    bytes += other.bytes;
    return *this;
  }
};

/// Counts what becomes of the source files. Callable from any thread.
class Tally {
 public:
  struct Failure {
    Path source;
    std::string error;  ///< the system's words, in UTF-8
  };

  void add(const Verdict& verdict);
  /// For the next run.
  void clear();

  /// The source files of one outcome, in their own sizes.
  Amount of(Verdict::Outcome outcome) const;
  /// All source files that were to be organised and whose fate is known; duplicates are not among them.
  Amount settled() const;
  std::vector<Failure> failures() const;

 private:
  static constexpr std::size_t outcomes = static_cast<std::size_t>(Verdict::Outcome::failed) + 1;

  mutable Mutex mutex_;
  std::array<Amount, outcomes> amounts_ GUARDED_BY(mutex_);
  std::vector<Failure> failures_ GUARDED_BY(mutex_);
};

}  // namespace kestrova
