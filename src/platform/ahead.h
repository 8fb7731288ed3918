#pragma once

#include "platform/mutex.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace kestrova {

/// Computes values on threads of its own, ahead of their use. Values are taken in the order in which they
/// were asked for. With no threads, a value is computed when it is taken.
///
/// One thread uses this object; it computes values too when it would have to wait. An exception is thrown
/// when the value is taken. What has not been taken in the end is dropped.
template <typename Value>
class Ahead {
 public:
  /// Computes a value, on any thread; several may run at once.
  using Compute = std::function<Value()>;

  /// The threads are started when there is something to do for them.
  explicit Ahead(std::size_t threads) : mostThreads_(threads) {}

  ~Ahead() {
    {
      const MutexLock lock(mutex_);
      isClosing_ = true;
    }
    canWork_.notifyAll();
    for (auto& thread : threads_) thread.join();
  }
  Ahead(const Ahead&) = delete;
  Ahead& operator=(const Ahead&) = delete;

  void ask(Compute compute) {
    auto task = std::make_shared<Task>(std::move(compute));
    values_.push_back(task->get_future());
    const MutexLock lock(mutex_);
    waiting_.push_back(std::move(task));
    if (idleThreads_ > 0) {
      canWork_.notifyOne();
    } else if (threads_.size() < mostThreads_) {
      threads_.emplace_back([this] { work(); });
    }
  }

  /// How many values have been asked for and not taken.
  std::size_t size() const { return values_.size(); }

  /// Whether the next value would be there without waiting.
  bool isReady() const { return !values_.empty() && isDone(values_.front()); }

  /// The next value; there must be one.
  Value take() {
    auto value = std::move(values_.front());
    values_.pop_front();
    while (!isDone(value)) {
      const auto task = takeWaiting();
      if (!task) break;
      (*task)();
    }
    return value.get();
  }

 private:
  using Task = std::packaged_task<Value()>;

  static bool isDone(const std::future<Value>& value) {
    return value.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  }

  /// Null if none is waiting.
  std::shared_ptr<Task> takeWaiting() {
    const MutexLock lock(mutex_);
    return waiting_.empty() ? nullptr : takeFirst();
  }

  std::shared_ptr<Task> takeFirst() REQUIRES(mutex_) {
    auto task = std::move(waiting_.front());
    waiting_.pop_front();
    return task;
  }

  /// Null when there will be no more.
  std::shared_ptr<Task> waitForTask() {
    const MutexLock lock(mutex_);
    ++idleThreads_;
    while (waiting_.empty() && !isClosing_) canWork_.wait(mutex_);
    --idleThreads_;
    return isClosing_ ? nullptr : takeFirst();
  }

  void work() {
    while (const auto task = waitForTask()) (*task)();
  }

  const std::size_t mostThreads_;
  std::deque<std::future<Value>> values_;
  std::vector<std::thread> threads_;
  Mutex mutex_;
  Condition canWork_;
  std::deque<std::shared_ptr<Task>> waiting_ GUARDED_BY(mutex_);
  std::size_t idleThreads_ GUARDED_BY(mutex_) = 0;
  bool isClosing_ GUARDED_BY(mutex_) = false;
};

}  // namespace kestrova
