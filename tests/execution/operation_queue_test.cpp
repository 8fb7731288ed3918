#include "execution/operation_queue.h"

#include "support/headless_program.h"

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

/// What operations call: counts, and notes how many run at once.
class Target {
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

std::shared_ptr<InvocationOperation> operationOn(Target& target, int number,
                                                 void (Target::*selector)(int) = &Target::work) {
  auto operation = std::make_shared<InvocationOperation>();
  operation->init(&target, selector, number);
  return operation;
}

void waitFor(const std::function<bool()>& condition) {
  while (!condition()) std::this_thread::yield();
}

}  // namespace

TEST(OperationQueue, RunsOperationsOneByOneInOrderWhenLimitedToOne) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  std::vector<int> expected;
  for (int i = 0; i < 2000; ++i) {
    queue.addOperation(operationOn(target, i));
    expected.push_back(i);
  }
  queue.waitUntilIdle();
  EXPECT_EQ(target.order(), expected);
  EXPECT_EQ(target.mostAtOnce, 1);
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, RunsSeveralOperationsAtOnceUpToItsLimit) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(3);
  for (int i = 0; i < 6; ++i) queue.addOperation(operationOn(target, i, &Target::waitForRelease));
  waitFor([&] { return target.waiting == 3; });
  EXPECT_EQ(queue.executingCount(), 3U);
  target.released = true;
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, 6);
}

TEST(OperationQueue, CountsAnOperationUntilItHasFinished) {
  Target target;
  OperationQueue queue;
  queue.addOperation(operationOn(target, 0, &Target::waitForRelease));
  waitFor([&] { return target.waiting == 1; });
  EXPECT_EQ(queue.operationCount(), 1U);
  target.released = true;
  queue.waitUntilIdle();
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, StartsNothingWhileSuspendedNotEvenWhatIsCancelled) {
  Target target;
  OperationQueue queue;
  queue.setSuspended(true);
  for (int i = 0; i < 5; ++i) queue.addOperation(operationOn(target, i));
  queue.cancelAllOperations();
  queue.waitUntilIdle();
  EXPECT_EQ(queue.operationCount(), 5U);
  queue.setSuspended(false);
  queue.waitUntilIdle();
  EXPECT_EQ(queue.operationCount(), 0U);
  EXPECT_EQ(target.calls, 0);
}

TEST(OperationQueue, LetsWhatRunsGoOnWhenItIsSuspended) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  queue.addOperation(operationOn(target, 0, &Target::waitForRelease));
  queue.addOperation(operationOn(target, 1));
  waitFor([&] { return target.waiting == 1; });
  queue.setSuspended(true);
  target.released = true;
  waitFor([&] { return queue.operationCount() == 1; });
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, 1);
  queue.setSuspended(false);
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, 2);
}

TEST(OperationQueue, EndsACancelledOperationWithoutRunningIt) {
  Target target;
  OperationQueue queue;
  queue.setSuspended(true);
  const auto cancelled = operationOn(target, 0);
  queue.addOperation(cancelled);
  queue.addOperation(operationOn(target, 1));
  cancelled->cancel();
  queue.setSuspended(false);
  queue.waitUntilIdle();
  EXPECT_EQ(target.order(), std::vector<int>{1});
}

TEST(OperationQueue, TellsItsObserversAfterEveryChangeOnTheThreadThatChangedIt) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  queue.setSuspended(true);
  std::mutex mutex;
  std::vector<std::pair<std::size_t, bool>> seen;
  const auto main = std::this_thread::get_id();
  queue.addObserver("operations", [&](std::string_view keyPath, OperationQueue& object) {
    const std::lock_guard lock(mutex);
    EXPECT_EQ(keyPath, "operations");
    seen.emplace_back(object.operationCount(), std::this_thread::get_id() == main);
  });
  queue.addOperation(operationOn(target, 0));
  queue.addOperation(operationOn(target, 1));
  queue.setSuspended(false);
  queue.waitUntilIdle();
  const std::vector<std::pair<std::size_t, bool>> expected{{1, true}, {2, true}, {1, false}, {0, false}};
  EXPECT_EQ(seen, expected);
}

TEST(OperationQueue, TellsNobodyWhoObservesAnotherKey) {
  Target target;
  OperationQueue queue;
  std::atomic<int> told = 0;
  queue.addObserver("somethingElse", [&](std::string_view, OperationQueue&) { ++told; });
  queue.addOperation(operationOn(target, 0));
  queue.waitUntilIdle();
  EXPECT_EQ(told, 0);
}

TEST(OperationQueue, CanBeCancelledAndAddedToByItsObservers) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  std::atomic<bool> added = false;
  queue.addObserver("operations", [&](std::string_view, OperationQueue& object) {
    if (object.operationCount() == 0 && !added.exchange(true)) object.addOperation(operationOn(target, 7));
  });
  queue.addOperation(operationOn(target, 0));
  waitFor([&] { return target.calls == 2; });
  queue.waitUntilIdle();
  EXPECT_EQ(target.order(), (std::vector<int>{0, 7}));
}

TEST(OperationQueue, GoesOnAfterAnOperationThatThrows) {
  const test::LogCapture log;
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  queue.addOperation(operationOn(target, 0, &Target::raise));
  queue.addOperation(operationOn(target, 1));
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, 1);
  EXPECT_TRUE(log.holds(QStringLiteral("EXCEPTION operation : on purpose")));
}

TEST(OperationQueue, CanBeDestroyedWhileItIsObservedAndFull) {
  Target target;
  for (int round = 0; round < 50; ++round) {
    OperationQueue queue;
    queue.addObserver("operations",
                      [](std::string_view, OperationQueue& object) { object.operationCount(); });
    for (int i = 0; i < 20; ++i) queue.addOperation(operationOn(target, i));
    if (round % 2 == 0) queue.setSuspended(true);
  }
  EXPECT_LE(target.calls, 1000);
}

TEST(OperationQueue, LetsGoOfAnArgumentWhenItsOperationEnds) {
  struct Holder {
    void take(const std::shared_ptr<int>&) {}
  } holder;
  const auto argument = std::make_shared<int>(1);
  OperationQueue queue;
  const auto operation = std::make_shared<InvocationOperation>();
  operation->init(&holder, &Holder::take, argument);
  EXPECT_EQ(argument.use_count(), 2);
  queue.addOperation(operation);
  queue.waitUntilIdle();
  EXPECT_EQ(argument.use_count(), 1);
}

// Every operation ends exactly once, run or cancelled, whatever happens to the queue meanwhile.
TEST(OperationQueue, LosesNothingWhenItIsSuspendedAndResumedAtRandomMoments) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  std::atomic<int> ended = 0;
  std::atomic<std::size_t> last = 0;
  queue.addObserver("operations", [&](std::string_view, OperationQueue& object) {
    ++ended;
    last = object.operationCount();
  });
  std::jthread disturber([&queue](const std::stop_token& stop) {
    std::mt19937 random(1);
    while (!stop.stop_requested()) {
      queue.setSuspended(random() % 2 == 0);
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 50));
    }
    queue.setSuspended(false);
  });
  constexpr int count = 5000;
  for (int i = 0; i < count; ++i) queue.addOperation(operationOn(target, i));
  waitFor([&] { return target.calls >= count / 2; });
  disturber.request_stop();
  disturber.join();
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, count);
  EXPECT_EQ(ended, 2 * count);
  EXPECT_EQ(last, 0U);
}

TEST(OperationQueue, DrainsWhenItIsCancelledAtRandomMoments) {
  std::mt19937 random(2);
  for (int round = 0; round < 100; ++round) {
    Target target;
    OperationQueue queue;
    queue.setMaxConcurrentOperationCount(1 + random() % 3);
    std::atomic<int> changes = 0;
    queue.addObserver("operations", [&](std::string_view, OperationQueue&) { ++changes; });
    for (int i = 0; i < 200; ++i) queue.addOperation(operationOn(target, i));
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
    queue.setSuspended(true);
    queue.cancelAllOperations();
    const int finished = target.calls;
    queue.setSuspended(false);
    queue.waitUntilIdle();
    EXPECT_EQ(queue.operationCount(), 0U);
    EXPECT_EQ(changes, 400);
    EXPECT_LE(target.calls, finished + 3);
  }
}

TEST(OperationQueue, StaysConsistentUnderManyThreadsAtOnce) {
  Target target;
  OperationQueue queue;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&] {
        for (int i = 0; i < 500; ++i) {
          queue.addOperation(operationOn(target, i));
          if (i % 50 == 0) queue.setSuspended(i % 100 == 0);
          if (i % 70 == 0) queue.setMaxConcurrentOperationCount(static_cast<std::size_t>(1 + i % 4));
          queue.isSuspended();
          queue.operationCount();
        }
      });
    }
  }
  queue.setSuspended(false);
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, 2000);
}

}  // namespace kestrova
