#pragma once

#include "platform/main_queue.h"

#include <atomic>
#include <future>
#include <thread>

namespace kestrova::test {

/// Holds a worker at a point until the test opens it.
class Gate {
 public:
  ~Gate() { open(); }
  void pass() {
    reached_ = true;
    while (!open_) std::this_thread::yield();
  }
  bool isReached() const { return reached_; }
  void open() { open_ = true; }

 private:
  std::atomic<bool> reached_ = false;
  std::atomic<bool> open_ = false;
};

/// Returns when the main thread has run all blocks posted so far. For workers: the main thread must be
/// running its queue.
inline void letTheMainThreadCatchUp() {
  std::promise<void> done;
  postToMainQueue([&done] { done.set_value(); });
  done.get_future().wait();
}

}  // namespace kestrova::test
