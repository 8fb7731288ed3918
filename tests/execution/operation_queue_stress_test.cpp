#include "operation_queue_fixture.h"

#include <chrono>
#include <random>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::operationOn;
using test::waitFor;
using Target = test::CountingTarget;

}  // namespace

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
    constexpr int mostAtOnce = 3;
    queue.setMaxConcurrentOperationCount(1 + random() % mostAtOnce);
    std::atomic<int> changes = 0;
    queue.addObserver("operations", [&](std::string_view, OperationQueue&) { ++changes; });
    constexpr int operations = 200;
    for (int i = 0; i < operations; ++i) queue.addOperation(operationOn(target, i));
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
    queue.setSuspended(true);
    queue.cancelAllOperations();
    const int finished = target.calls;
    queue.setSuspended(false);
    queue.waitUntilIdle();
    EXPECT_EQ(queue.operationCount(), 0U);
    EXPECT_EQ(changes, 2 * operations) << "each was added and removed";
    EXPECT_LE(target.calls, finished + mostAtOnce);
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
