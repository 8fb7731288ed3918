#pragma once

#include "platform/mutex.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace kestrova {

/// Blocks that wait for the main thread and run there in the order in which they were posted. This is the
/// only way from a worker to the controls.
class MainQueue {
 public:
  using Block = std::function<void()>;

  /// The process's queue.
  static MainQueue& instance();

  MainQueue();
  ~MainQueue();
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// Callable from any thread; returns at once.
  void post(Block block);

  /// Runs the waiting blocks, for about `budget` at most, so that the event loop gets its turn; returns
  /// whether there were any. Main thread only.
  bool runPending(std::chrono::steady_clock::duration budget = std::chrono::steady_clock::duration::max());

  /// Runs blocks soon after they arrive until `done` returns true or the time is up; returns whether it did.
  /// For programs and tests that have no event loop. Main thread only.
  bool runUntil(const std::function<bool()>& done, std::chrono::steady_clock::duration timeout);

  /// Readable while blocks wait; an event loop watches it.
  int readyDescriptor() const { return pipe_[0]; }

 private:
  bool takePosted();

  Mutex mutex_;
  std::deque<Block> posted_ GUARDED_BY(mutex_);
  bool isSignalled_ GUARDED_BY(mutex_) = false;  ///< the descriptor is readable, or about to be
  std::deque<Block> running_;                    // main thread only
  int pipe_[2] = {-1, -1};
};

/// Posts a block to the process's main queue.
void postToMainQueue(MainQueue::Block block);

/// Runs the process's main queue from Qt's event loop for as long as it lives. Main thread only.
class MainQueueRunner {
 public:
  MainQueueRunner();
  ~MainQueueRunner();

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrova
