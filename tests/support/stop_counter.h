#pragma once

#include "imaging/base/interruption.h"

#include <limits>

namespace kestrova::test {

/// Counts how often work asks whether to stop, and says so from a certain call on.
class StopCounter {
 public:
  explicit StopCounter(int firstYes = std::numeric_limits<int>::max()) : firstYes_(firstYes) {}

  /// Must not outlive the counter.
  imaging::Stopped stopped() {
    return [this] { return ++asked_ >= firstYes_; };
  }
  int asked() const { return asked_; }

 private:
  int firstYes_;
  int asked_ = 0;
};

}  // namespace kestrova::test
