#pragma once

#include "platform/thread_annotations.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kestrova {

/// A std::mutex that clang knows: it checks that fields marked GUARDED_BY are only used with the lock held.
/// Lock it with a MutexLock.
class CAPABILITY("mutex") Mutex {
 public:
  void lock() ACQUIRE() { mutex_.lock(); }
  void unlock() RELEASE() { mutex_.unlock(); }

 private:
  friend class Condition;
  std::mutex mutex_;
};

/// Holds a mutex for as long as it lives, except between `unlock` and `lock`.
class SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : lock_(mutex) {}
  ~MutexLock() RELEASE() = default;
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void unlock() RELEASE() { lock_.unlock(); }
  void lock() ACQUIRE() { lock_.lock(); }

 private:
  std::unique_lock<Mutex> lock_;
};

/// Lets threads wait for a change of what a mutex guards.
class Condition {
 public:
  /// Unlocks the mutex, waits until another thread notifies, and locks it again. It may also return for no
  /// reason, so call it in a loop that checks the condition.
  void wait(Mutex& mutex) REQUIRES(mutex) {
    std::unique_lock lock(mutex.mutex_, std::adopt_lock);
    changed_.wait(lock);
    lock.release();
  }
  /// The same, but waits no longer than until then. False when that time has come.
  bool waitUntil(Mutex& mutex, std::chrono::steady_clock::time_point time) REQUIRES(mutex) {
    std::unique_lock lock(mutex.mutex_, std::adopt_lock);
    const bool isNotified = changed_.wait_until(lock, time) == std::cv_status::no_timeout;
    lock.release();
    return isNotified;
  }
  void notifyOne() { changed_.notify_one(); }
  void notifyAll() { changed_.notify_all(); }

 private:
  std::condition_variable changed_;
};

}  // namespace kestrova
