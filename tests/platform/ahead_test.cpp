#include "platform/ahead.h"

#include <atomic>
#include <stdexcept>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

/// For each number of threads: with none, values are computed when they are taken.
class AheadOfUse : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Threads, AheadOfUse, testing::Values(0, 1, 4));

}  // namespace

TEST_P(AheadOfUse, GivesTheValuesInTheOrderInWhichTheyWereAskedFor) {
  Ahead<int> ahead(GetParam());
  int next = 0;
  for (int i = 0; i < 2000; ++i) {
    ahead.ask([i] {
      if (i % 7 == 0) std::this_thread::yield();
      return i;
    });
    if (i % 3 != 0) continue;
    ASSERT_EQ(ahead.take(), next++);
  }
  while (ahead.size() > 0) ASSERT_EQ(ahead.take(), next++);
  EXPECT_EQ(next, 2000);
}

TEST_P(AheadOfUse, ThrowsWhatAComputationThrewWhenItsValueIsTaken) {
  Ahead<int> ahead(GetParam());
  ahead.ask([]() -> int { throw std::runtime_error("on purpose"); });
  ahead.ask([] { return 2; });
  EXPECT_THROW(ahead.take(), std::runtime_error);
  EXPECT_EQ(ahead.take(), 2);
}

TEST_P(AheadOfUse, DropsWhatIsNotTaken) {
  std::atomic<int> computed = 0;
  {
    Ahead<int> ahead(GetParam());
    for (int i = 0; i < 100; ++i) ahead.ask([&computed] { return ++computed; });
    ahead.take();
  }
  const int atTheEnd = computed;
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
  EXPECT_EQ(computed, atTheEnd);
  EXPECT_GE(atTheEnd, 1);
}

TEST(AheadWithoutThreads, ComputesAValueWhenItIsTaken) {
  Ahead<int> ahead(0);
  int computed = 0;
  ahead.ask([&computed] { return ++computed; });
  EXPECT_FALSE(ahead.isReady());
  EXPECT_EQ(computed, 0);
  EXPECT_EQ(ahead.take(), 1);
}

TEST(AheadWithThreads, ComputesValuesBeforeTheyAreTakenAndSaysSo) {
  Ahead<int> ahead(2);
  std::atomic<bool> isReleased = false;
  EXPECT_FALSE(ahead.isReady());
  ahead.ask([&isReleased] {
    while (!isReleased) std::this_thread::yield();
    return 1;
  });
  EXPECT_FALSE(ahead.isReady());
  isReleased = true;
  while (!ahead.isReady()) std::this_thread::yield();
  EXPECT_EQ(ahead.take(), 1);
}

TEST(AheadWithThreads, ComputesSeveralValuesAtOnce) {
  Ahead<int> ahead(2);
  std::atomic<int> running = 0;
  const auto meet = [&running] {
    ++running;
    while (running < 3) std::this_thread::yield();
    return 1;
  };
  for (int i = 0; i < 3; ++i) ahead.ask(meet);
  EXPECT_EQ(ahead.take(), 1) << "the thread that takes computes too";
}

}  // namespace kestrova
