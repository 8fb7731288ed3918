#include "platform/main_queue.h"

#include "support/patience.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/ioctl.h>

namespace kestrova {

TEST(MainQueue, RunsBlocksInTheOrderInWhichTheyWerePosted) {
  MainQueue queue;
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) queue.post([&order, i] { order.push_back(i); });
  queue.runPending();
  ASSERT_EQ(order.size(), 100U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(MainQueue, RunsABlockThatABlockPosted) {
  MainQueue queue;
  bool ran = false;
  queue.post([&] { queue.post([&] { ran = true; }); });
  queue.runPending();
  EXPECT_TRUE(ran);
}

TEST(MainQueue, StopsWhenItsTimeIsOverAndGoesOnLater) {
  MainQueue queue;
  int runs = 0;
  for (int i = 0; i < 3; ++i) queue.post([&] { ++runs; });
  queue.runPending(std::chrono::steady_clock::duration::zero());
  EXPECT_EQ(runs, 1);
  queue.runPending();
  EXPECT_EQ(runs, 3);
}

TEST(MainQueue, TakesBlocksFromManyThreads) {
  MainQueue queue;
  int runs = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&] {
        for (int i = 0; i < 1000; ++i) queue.post([&] { ++runs; });
      });
    }
  }
  EXPECT_TRUE(queue.runUntil([&] { return runs == 4000; }, test::patience));
}

TEST(MainQueue, IsSignalledOncePerTurn) {
  MainQueue queue;
  const auto signals = [&queue] {
    int count = 0;
    ioctl(queue.readyDescriptor(), FIONREAD, &count);
    return count;
  };
  EXPECT_EQ(signals(), 0);
  for (int i = 0; i < 10; ++i) {
    queue.post([] {});
    queue.runPending(std::chrono::steady_clock::duration::zero());
    queue.post([] {});
  }
  EXPECT_EQ(signals(), 1) << "its turn is not over while blocks wait";
  queue.runPending();
  EXPECT_EQ(signals(), 0);
  queue.post([] {});
  EXPECT_EQ(signals(), 1);
}

TEST(MainQueue, SaysWhetherThereWereBlocks) {
  MainQueue queue;
  EXPECT_FALSE(queue.runPending());
  queue.post([] {});
  EXPECT_TRUE(queue.runPending());
}

TEST(MainQueue, GivesUpWaitingWhenTheTimeIsOver) {
  MainQueue queue;
  EXPECT_FALSE(queue.runUntil([] { return false; }, std::chrono::milliseconds(1)));
}

TEST(MainQueue, IsRunByQtsEventLoop) {
  const MainQueueRunner runner;
  QEventLoop loop;
  int runs = 0;
  std::jthread worker([&] {
    for (int i = 0; i < 1000; ++i) postToMainQueue([&runs] { ++runs; });
    postToMainQueue([&loop] { loop.quit(); });
  });
  QTimer::singleShot(20000, &loop, [&loop] { loop.exit(1); });
  EXPECT_EQ(loop.exec(), 0);
  EXPECT_EQ(runs, 1000);
}

}  // namespace kestrova
