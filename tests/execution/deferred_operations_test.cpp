#include "operation_queue_fixture.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::operationOn;
using test::waitFor;
using Target = test::CountingTarget;

/// A queue that runs one operation at a time and whose deferred ones are numbered from 100.
class DeferredOperations : public testing::Test {
 protected:
  DeferredOperations() {
    queue.setMaxConcurrentOperationCount(1);
    queue.setSuspended(true);
    queue.setSupplier([this] { return operationOn(target, 100 + supplied++); });
  }
  void runAll() {
    queue.setSuspended(false);
    queue.waitUntilIdle();
  }

  Target target;
  std::atomic<int> supplied = 0;
  OperationQueue queue;
};

}  // namespace

TEST_F(DeferredOperations, RunInTheirPlaceAmongTheOthers) {
  queue.addDeferred();
  queue.addDeferred();
  queue.addOperation(operationOn(target, 1));
  queue.addDeferred();
  runAll();
  EXPECT_EQ(target.order(), (std::vector<int>{100, 101, 1, 102}));
}

TEST_F(DeferredOperations, CountFromTheMomentTheyAreAdded) {
  for (int i = 0; i < 5; ++i) queue.addDeferred();
  EXPECT_EQ(queue.operationCount(), 5U);
  EXPECT_EQ(supplied, 0);
  runAll();
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST_F(DeferredOperations, ComeIntoBeingWhenTheyAreReached) {
  queue.addOperation(operationOn(target, 1, &Target::waitForRelease));
  queue.addDeferred();
  queue.setSuspended(false);
  waitFor([this] { return target.waiting == 1; });
  EXPECT_EQ(supplied, 0);
  target.released = true;
  queue.waitUntilIdle();
  EXPECT_EQ(supplied, 1);
}

TEST_F(DeferredOperations, AreToldToTheObserversLikeTheOthers) {
  std::mutex mutex;
  std::vector<std::size_t> counts;
  queue.addObserver("operations", [&](std::string_view, OperationQueue& object) {
    const std::lock_guard lock(mutex);
    counts.push_back(object.operationCount());
  });
  queue.addDeferred();
  queue.addDeferred();
  runAll();
  EXPECT_EQ(counts, (std::vector<std::size_t>{1, 2, 1, 0}));
}

TEST_F(DeferredOperations, AreCancelledLikeTheOthersAndThenSkipped) {
  queue.setSupplier([this] {
    auto operation = std::make_shared<InvocationOperation>();
    operation->init(&target, &Target::raise, 100 + supplied++, &Target::work);
    return operation;
  });
  queue.addDeferred();
  queue.addDeferred();
  queue.cancelAllOperations();
  runAll();
  EXPECT_EQ(target.order(), (std::vector<int>{100, 101}));
}

TEST_F(DeferredOperations, AreNotCancelledWhenTheyAreAddedAfterTheOthersWereCancelled) {
  queue.addDeferred();
  queue.cancelAllOperations();
  queue.addDeferred();
  runAll();
  EXPECT_EQ(target.order(), std::vector<int>{101});
}

TEST_F(DeferredOperations, AreNotMadeWhenTheQueueIsClosed) {
  queue.addDeferred();
  queue.close();
  EXPECT_EQ(supplied, 0);
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST_F(DeferredOperations, RunOnSeveralThreadsAtOnce) {
  queue.setSupplier([this] { return operationOn(target, supplied++, &Target::waitForRelease); });
  queue.setMaxConcurrentOperationCount(3);
  for (int i = 0; i < 3; ++i) queue.addDeferred();
  queue.setSuspended(false);
  waitFor([this] { return target.waiting == 3; });
  target.released = true;
  queue.waitUntilIdle();
  EXPECT_EQ(target.calls, 3);
}

}  // namespace kestrova
