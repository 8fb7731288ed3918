#include "model/tally.h"

namespace kestrova {

void Tally::add(const Verdict& verdict) {
  const MutexLock lock(mutex_);
  const Amount one{1, static_cast<std::int64_t>(verdict.sourceSize)};
  amounts_[verdict.outcome] += one;
  if (traitsOf(verdict.counted()).isSettled) settled_ += one;
  if (traitsOf(verdict.outcome).isError || !verdict.error.empty())
    remarks_.push_back({verdict.source, verdict.outcome, verdict.error});
}

void Tally::clear() {
  const MutexLock lock(mutex_);
  amounts_.clear();
  settled_ = {};
  remarks_.clear();
}

Amount Tally::of(Outcome outcome) const {
  const MutexLock lock(mutex_);
  const auto found = amounts_.find(outcome);
  return found == amounts_.end() ? Amount() : found->second;
}

Tally::Amounts Tally::amounts() const {
  const MutexLock lock(mutex_);
  return amounts_;
}

Amount Tally::settled() const {
  const MutexLock lock(mutex_);
  return settled_;
}

std::vector<Tally::Remark> Tally::remarks() const {
  const MutexLock lock(mutex_);
  return remarks_;
}

}  // namespace kestrova
