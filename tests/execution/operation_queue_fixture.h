#pragma once

#include "execution/operation_queue.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kestrova::test {

/// The target of operations: counts calls, and how many run at once.
class CountingTarget {
 public:
  void work(int number) {
    const int running = ++running_;
    int most = mostAtOnce.load();
    while (running > most && !mostAtOnce.compare_exchange_weak(most, running)) {
    }
    {
      const std::lock_guard lock(mutex_);
      order_.push_back(number);
    }
    ++calls;
    --running_;
  }
  void waitForRelease(int number) {
    ++waiting;
    while (!released) std::this_thread::yield();
    work(number);
  }
  void raise(int) { throw std::runtime_error("on purpose"); }
  std::vector<int> order() const {
    const std::lock_guard lock(mutex_);
    return order_;
  }

  std::atomic<int> calls = 0;
  std::atomic<int> waiting = 0;
  std::atomic<int> mostAtOnce = 0;
  std::atomic<bool> released = false;

 private:
  mutable std::mutex mutex_;
  std::vector<int> order_;
  std::atomic<int> running_ = 0;
};

inline std::shared_ptr<InvocationOperation> operationOn(
    CountingTarget& target, int number, void (CountingTarget::*selector)(int) = &CountingTarget::work) {
  auto operation = std::make_shared<InvocationOperation>();
  operation->init(&target, selector, number);
  return operation;
}

inline void waitFor(const std::function<bool()>& condition) {
  while (!condition()) std::this_thread::yield();
}

}  // namespace kestrova::test
