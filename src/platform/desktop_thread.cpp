#include "platform/desktop_thread.h"

#include "platform/mutex.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <optional>
#include <utility>

namespace kestrova {

namespace {

constexpr std::chrono::milliseconds patience(100);  // with calls under way when nobody needs them any more

std::atomic<bool> wasAnyAbandoned = false;

}  // namespace

struct DesktopThread::Calls {
  Mutex mutex;
  Condition changed;
  std::deque<Call> waiting GUARDED_BY(mutex);
  bool isEnding GUARDED_BY(mutex) = false;

  /// Waits for one; nothing when there are no more to come.
  std::optional<Call> next() {
    const MutexLock lock(mutex);
    while (waiting.empty() && !isEnding) changed.wait(mutex);
    if (waiting.empty()) return std::nullopt;
    Call call = std::move(waiting.front());
    waiting.pop_front();
    return call;
  }
};

DesktopThread::DesktopThread() : calls_(std::make_shared<Calls>()) {
  std::packaged_task<void()> task([calls = calls_] {
    while (const auto call = calls->next()) (*call)();
  });
  ended_ = task.get_future();
  thread_ = std::thread(std::move(task));
}

DesktopThread::~DesktopThread() {
  {
    const MutexLock lock(calls_->mutex);
    calls_->isEnding = true;
  }
  calls_->changed.notifyAll();
  if (ended_.wait_for(patience) == std::future_status::ready) {
    thread_.join();
    return;
  }
  wasAnyAbandoned = true;
  thread_.detach();
  const MutexLock lock(calls_->mutex);
  calls_->waiting.clear();
}

void DesktopThread::post(Call call) {
  {
    const MutexLock lock(calls_->mutex);
    calls_->waiting.push_back(std::move(call));
  }
  calls_->changed.notifyAll();
}

int endOfMain(int status) {
  if (!wasAnyAbandoned) return status;
  std::fflush(nullptr);
  std::_Exit(status);
}

}  // namespace kestrova
