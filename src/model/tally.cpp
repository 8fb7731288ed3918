#include "model/tally.h"

namespace kestrova {

using Outcome = Verdict::Outcome;

void Tally::add(const Verdict& verdict) {
  const MutexLock lock(mutex_);
  amounts_.at(static_cast<std::size_t>(verdict.outcome)) +=
      {1, static_cast<std::int64_t>(verdict.sourceSize)};
  if (verdict.outcome == Outcome::failed) failures_.push_back({verdict.source, verdict.error});
}

void Tally::clear() {
  const MutexLock lock(mutex_);
  amounts_ = {};
  failures_.clear();
}

Amount Tally::of(Outcome outcome) const {
  const MutexLock lock(mutex_);
  return amounts_.at(static_cast<std::size_t>(outcome));
}

Amount Tally::settled() const {
  const MutexLock lock(mutex_);
  Amount sum;
  for (const auto outcome : {Outcome::copied, Outcome::resized, Outcome::rewritten, Outcome::small,
                             Outcome::exists, Outcome::failed}) {
    sum += amounts_.at(static_cast<std::size_t>(outcome));
  }
  return sum;
}

std::vector<Tally::Failure> Tally::failures() const {
  const MutexLock lock(mutex_);
  return failures_;
}

}  // namespace kestrova
