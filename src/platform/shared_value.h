#pragma once

#include "platform/mutex.h"

#include <atomic>
#include <cstdint>
#include <utility>

namespace kestrova {

/// A number or flag that one thread at a time writes and any thread reads: never torn, never ordered with
/// anything else.
template <typename Value>
class Shared {
 public:
  Shared() = default;
  Shared(Value value) : value_(value) {}  // NOLINT(google-explicit-constructor): stands for a plain field
  Shared& operator=(Value value) {
    value_.store(value, std::memory_order_relaxed);
    return *this;
  }
  Shared& operator+=(Value value) { return *this = *this + value; }
  operator Value() const {
    return value_.load(std::memory_order_relaxed);
  }  // NOLINT(google-explicit-constructor)

 private:
  std::atomic<Value> value_{};
};

using Counter = Shared<std::int64_t>;

/// A text, path or list that the main thread changes while workers may be reading it: each reader gets a
/// copy.
template <typename Value>
class Snapshot {
 public:
  Snapshot& operator=(Value value) {
    const MutexLock lock(mutex_);
    value_ = std::move(value);
    return *this;
  }
  Value get() const {
    const MutexLock lock(mutex_);
    return value_;
  }

 private:
  mutable Mutex mutex_;
  Value value_ GUARDED_BY(mutex_);
};

}  // namespace kestrova
