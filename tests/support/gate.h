#pragma once

#include <atomic>
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

}  // namespace kestrova::test
