#pragma once

#include "platform/mutex.h"

#include <utility>

namespace kestrova {

/// A value that any thread reads and changes, whole: each reader gets a copy.
template <typename Value>
class GuardedValue {
 public:
  GuardedValue& operator=(Value value) EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    value_ = std::move(value);
    return *this;
  }
  Value get() const EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    return value_;
  }
  /// Changes the value in place, with the lock held: the change must be short and not come back here.
  template <typename Change>
  void update(const Change& change) EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    change(value_);
  }

 private:
  mutable Mutex mutex_;
  Value value_ GUARDED_BY(mutex_){};
};

}  // namespace kestrova
