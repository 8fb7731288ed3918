#pragma once

#include "app/verdict.h"

#include <atomic>
#include <cstdint>

namespace kestrova {

/// Counts what a run settles, as far as the controls do not tell it.
class RunTally {
 public:
  /// Callable from any thread, by one at a time.
  void add(const Verdict& verdict);
  /// For the next run; while none is under way.
  void clear();

  std::int64_t settledFiles() const { return settledFiles_; }  ///< of those to organise, whatever their fate
  std::int64_t settledBytes() const { return settledBytes_; }
  std::int64_t failedFiles() const { return failedFiles_; }

 private:
  std::atomic<std::int64_t> settledFiles_ = 0, settledBytes_ = 0, failedFiles_ = 0;
};

}  // namespace kestrova
