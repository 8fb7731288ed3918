#include "window/run_tally.h"

namespace kestrova {

void RunTally::add(const Verdict& verdict) {
  using Outcome = Verdict::Outcome;
  if (verdict.outcome == Outcome::duplicate || verdict.outcome == Outcome::sameContent) return;
  settledFiles_ += 1;
  settledBytes_ += static_cast<std::int64_t>(verdict.sourceSize);
  if (verdict.outcome == Outcome::failed) failedFiles_ += 1;
}

void RunTally::clear() {
  settledFiles_ = 0;
  settledBytes_ = 0;
  failedFiles_ = 0;
}

}  // namespace kestrova
