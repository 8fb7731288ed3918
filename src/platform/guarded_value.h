#pragma once

#include "platform/mutex.h"

#include <utility>

namespace kestrova {

/// A value that any thread may read and change; each reader gets a copy.
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
  /// Changes the value in place with the lock held. The change must be short and must not use this object.
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
