#pragma once

#include <atomic>
#include <cstdint>

namespace kestrova {

/// A number or flag that one thread at a time writes and any thread reads. Reads and writes are atomic, but
/// not ordered with anything else.
template <typename Value>
class RelaxedAtomic {
 public:
  RelaxedAtomic() = default;
  RelaxedAtomic(Value value) : value_(value) {}  // NOLINT(google-explicit-constructor): stands for a field
  RelaxedAtomic& operator=(Value value) {
    value_.store(value, std::memory_order_relaxed);
    return *this;
  }
  RelaxedAtomic& operator+=(Value value) { return *this = *this + value; }
  operator Value() const {
    return value_.load(std::memory_order_relaxed);
  }  // NOLINT(google-explicit-constructor)

 private:
  std::atomic<Value> value_{};
};

using Counter = RelaxedAtomic<std::int64_t>;

}  // namespace kestrova
