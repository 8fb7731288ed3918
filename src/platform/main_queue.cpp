#include "platform/main_queue.h"

#include <QSocketNotifier>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace kestrova {

namespace {

using Clock = std::chrono::steady_clock;

// Longer turns would make the window stutter.
constexpr auto eventLoopBudget = std::chrono::milliseconds(8);

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
  const MutexLock lock(mutex_);
  posted_.push_back(std::move(block));
  if (posted_.size() > 1) return;
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
    return false;
  }
  running_.swap(posted_);
  return true;
}

void MainQueue::runPending(Clock::duration budget) {
  const auto start = Clock::now();
  while (takePosted()) {
    const Block block = std::move(running_.front());
    running_.pop_front();
    block();
    if (Clock::now() - start >= budget) return;
  }
}

bool MainQueue::runUntil(const std::function<bool()>& done, Clock::duration timeout) {
  const auto deadline = Clock::now() + timeout;
  for (;;) {
    runPending();
    if (done()) return true;
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
  QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                   [] { MainQueue::instance().runPending(eventLoopBudget); });
}

MainQueueRunner::~MainQueueRunner() = default;

}  // namespace kestrova
