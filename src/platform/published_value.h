#pragma once

#include <atomic>
#include <deque>
#include <utility>

namespace kestrova {

/// A value that one thread occasionally replaces while others read it, without a lock. Former values are kept
/// as long as this object exists, as others may still be reading them. It is meant for values that change a
/// few times in a program's life.
template <typename Value>
class PublishedValue {
 public:
  PublishedValue() = default;
  PublishedValue(const PublishedValue&) = delete;
  PublishedValue& operator=(const PublishedValue&) = delete;

  /// Replaces the value, unless it is the same.
  PublishedValue& operator=(Value value) {
    if (value == values_.back()) return *this;
    values_.push_back(std::move(value));
    current_.store(&values_.back(), std::memory_order_release);
    return *this;
  }
  /// Valid for as long as this object.
  const Value& get() const { return *current_.load(std::memory_order_acquire); }

 private:
  std::deque<Value> values_ = std::deque<Value>(1);  // never moves a value
  std::atomic<const Value*> current_{&values_.back()};
};

}  // namespace kestrova
