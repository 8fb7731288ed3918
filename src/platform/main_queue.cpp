#include "platform/main_queue.h"

#include <QSocketNotifier>
#include <QTimer>
#include <cstdlib>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace kestrova {

namespace {

using Clock = std::chrono::steady_clock;

// Longer turns would make the window stutter.
constexpr auto eventLoopBudget = std::chrono::milliseconds(8);

// After blocks have run. Otherwise a worker that posts a block for every file would wake the main thread for
// each of them.
constexpr auto rest = std::chrono::milliseconds(2);

// Both Qt's event loop and a plain poll can wait for a descriptor, and it needs no object that two threads
// own.
void openPipe(int (&ends)[2]) {
  if (pipe(ends) != 0) std::abort();
  for (const int end : ends) {
    fcntl(end, F_SETFL, O_NONBLOCK);
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
}

}  // namespace

MainQueue& MainQueue::instance() {
  static MainQueue queue;
  return queue;
}

MainQueue::MainQueue() { openPipe(pipe_); }

MainQueue::~MainQueue() {
  close(pipe_[0]);
  close(pipe_[1]);
}

void MainQueue::post(Block block) {
  {
    const MutexLock lock(mutex_);
    posted_.push_back(std::move(block));
    if (std::exchange(isSignalled_, true)) return;
  }
  const char signal = 1;
  // A full pipe is readable, and that is enough.
  [[maybe_unused]] const auto written = write(pipe_[1], &signal, 1);
}

// The descriptor stays readable until the last block has been taken, so an event loop that used up its budget
// comes back.
bool MainQueue::takePosted() {
  if (!running_.empty()) return true;
  const MutexLock lock(mutex_);
  if (posted_.empty()) {
    char signals[16];
    while (read(pipe_[0], signals, sizeof signals) > 0) {
    }
    isSignalled_ = false;
    return false;
  }
  running_.swap(posted_);
  return true;
}

bool MainQueue::runPending(Clock::duration budget) {
  const auto start = Clock::now();
  bool hasRun = false;
  while (takePosted()) {
    const Block block = std::move(running_.front());
    running_.pop_front();
    block();
    hasRun = true;
    if (Clock::now() - start >= budget) break;
  }
  return hasRun;
}

bool MainQueue::runUntil(const std::function<bool()>& done, Clock::duration timeout) {
  const auto deadline = Clock::now() + timeout;
  for (;;) {
    const bool hasRun = runPending();
    if (done()) return true;
    if (hasRun) std::this_thread::sleep_for(rest);
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    pollfd ready{pipe_[0], POLLIN, 0};
    // `done` may depend on more than blocks, so it is checked again soon.
    poll(&ready, 1, static_cast<int>(left < 5 ? left : 5));
  }
}

void postToMainQueue(MainQueue::Block block) { MainQueue::instance().post(std::move(block)); }

MainQueueRunner::MainQueueRunner()
    : notifier_(
          std::make_unique<QSocketNotifier>(MainQueue::instance().readyDescriptor(), QSocketNotifier::Read)) {
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [notifier = notifier_.get()] {
    MainQueue::instance().runPending(eventLoopBudget);
    notifier->setEnabled(false);
    QTimer::singleShot(rest, notifier, [notifier] { notifier->setEnabled(true); });
  });
}

MainQueueRunner::~MainQueueRunner() = default;

}  // namespace kestrova
