#pragma once

#include "platform/thread_annotations.h"

#include <condition_variable>
#include <mutex>

namespace kestrova {

/// A std::mutex that clang knows: it checks that fields marked GUARDED_BY are used with the lock held only.
/// Take it by a MutexLock.
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
  /// Frees the mutex, waits until another thread notifies, and holds it again. May also return without cause,
  /// so it is called in a loop that looks at what is waited for.
  void wait(Mutex& mutex) REQUIRES(mutex) {
    std::unique_lock lock(mutex.mutex_, std::adopt_lock);
    changed_.wait(lock);
    lock.release();
  }
  void notifyAll() { changed_.notify_all(); }

 private:
  std::condition_variable changed_;
};

}  // namespace kestrova
