#include "operation_queue_fixture.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::operationOn;
using test::waitFor;
using Target = test::CountingTarget;

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
  constexpr int rounds = 50;
  constexpr int operations = 20;
  for (int round = 0; round < rounds; ++round) {
    OperationQueue queue;
    queue.addObserver("operations",
                      [](std::string_view, OperationQueue& object) { object.operationCount(); });
    for (int i = 0; i < operations; ++i) queue.addOperation(operationOn(target, i));
    if (round % 2 == 0) queue.setSuspended(true);
  }
  EXPECT_LE(target.calls, rounds * operations);
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

// Every operation ends exactly once, run or cancelled, whatever happens to the queue.
TEST(OperationQueue, CallsTheOtherMethodOfAnOperationThatIsCancelledBeforeItStarts) {
  Target target;
  OperationQueue queue;
  queue.setSuspended(true);
  const auto operation = std::make_shared<InvocationOperation>();
  operation->init(&target, &Target::raise, 7, &Target::work);
  queue.addOperation(operation);
  operation->cancel();
  queue.setSuspended(false);
  queue.waitUntilIdle();
  EXPECT_EQ(target.order(), std::vector<int>{7});
}

TEST(OperationQueue, ClosedWaitsForWhatRunsAndStartsNothingMore) {
  Target target;
  OperationQueue queue;
  queue.setMaxConcurrentOperationCount(1);
  queue.addOperation(operationOn(target, 1, &Target::waitForRelease));
  waitFor([&] { return target.waiting == 1; });
  queue.addOperation(operationOn(target, 2));
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    target.released = true;
  });
  queue.close();
  EXPECT_EQ(target.order(), std::vector<int>{1});
  queue.addOperation(operationOn(target, 3));
  release.join();
  EXPECT_EQ(target.calls, 1);
}

}  // namespace kestrova
