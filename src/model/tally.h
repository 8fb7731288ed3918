#pragma once

#include "model/amount.h"
#include "model/verdict.h"
#include "platform/mutex.h"

#include <map>
#include <string>
#include <vector>

namespace kestrova {

/// Counts what becomes of the source files, in their own sizes. Callable from any thread.
class Tally {
 public:
  using Amounts = std::map<Outcome, Amount>;
  /// What is reported about one file.
  struct Remark {
    Path source;
    Outcome outcome = Outcome::failed;
    std::string error;  ///< the verdict's
  };

  void add(const Verdict& verdict);
  /// For the next run.
  void clear();

  /// The source files of one outcome.
  Amount of(Outcome outcome) const;
  /// The same for every outcome that occurred.
  Amounts amounts() const;
  /// All source files that were to be organised and whose outcome is known; duplicates are not among them.
  Amount settled() const;
  /// The files that could not be read, written or rewritten, in the order of the verdicts.
  std::vector<Remark> remarks() const;

 private:
  mutable Mutex mutex_;
  Amounts amounts_ GUARDED_BY(mutex_);
  Amount settled_ GUARDED_BY(mutex_);
  std::vector<Remark> remarks_ GUARDED_BY(mutex_);
};

}  // namespace kestrova
