#include "app/time_left.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class TimeLeftTest : public testing::Test {
 protected:
  std::optional<seconds> after(TimeLeft::Clock::duration time, double done) {
    now_ += time;
    return timeLeft.guess(done, 1000, now_);
  }

  TimeLeft timeLeft;

 private:
  TimeLeft::Clock::time_point now_{};
};

TEST_F(TimeLeftTest, SaysNothingBeforeItHasSeenEnough) {
  EXPECT_EQ(after(seconds(0), 0), std::nullopt);
  EXPECT_EQ(after(seconds(60), 0), std::nullopt) << "nothing is done yet";
  TimeLeft fresh;
  const TimeLeft::Clock::time_point start{};
  EXPECT_EQ(fresh.guess(0, 1000, start), std::nullopt);
  EXPECT_EQ(fresh.guess(20, 1000, start + seconds(2)), std::nullopt);
  EXPECT_EQ(fresh.guess(30, 1000, start + seconds(3)), seconds(97));
}

TEST_F(TimeLeftTest, CountsFromWhatWasDoneWhenItBegan) {
  after(seconds(0), 500);
  EXPECT_EQ(after(seconds(10), 600), seconds(40));
}

TEST_F(TimeLeftTest, RunsDownWhileAFileIsWaitedFor) {
  after(seconds(0), 0);
  EXPECT_EQ(after(seconds(10), 100), seconds(90));
  EXPECT_EQ(after(seconds(5), 100), seconds(85));
  EXPECT_EQ(after(seconds(200), 100), seconds(45)) << "but not to nothing";
}

TEST_F(TimeLeftTest, FollowsAChangedSpeedWithoutJumping) {
  after(seconds(0), 0);
  double done = 0;
  for (int i = 0; i < 20; ++i) after(seconds(1), done += 10);
  const auto steady = after(seconds(1), done += 10);
  EXPECT_EQ(steady, seconds(79));
  constexpr seconds smallStep(11);
  const auto slower = after(seconds(1), done += 1);
  EXPECT_GT(slower, steady);
  EXPECT_LT(slower, *steady + smallStep);
  std::optional<seconds> settled;
  for (int i = 0; i < 100; ++i) settled = after(seconds(1), done += 1);
  constexpr seconds atTheNewSpeed(690);  // of what is left, one a second
  EXPECT_GT(settled, atTheNewSpeed - seconds(90)) << "most of the old speed should be forgotten";
  EXPECT_LT(settled, atTheNewSpeed);
}

TEST_F(TimeLeftTest, TakesManySmallStepsForTheSameAsALargeOne) {
  after(seconds(0), 0);
  std::optional<seconds> guess;
  for (int i = 1; i <= 1000; ++i) guess = after(milliseconds(10), i * 0.1);
  EXPECT_EQ(guess, seconds(90));
}

TEST_F(TimeLeftTest, DoesNotCountAPause) {
  after(seconds(0), 0);
  after(seconds(10), 100);
  timeLeft.pause();
  EXPECT_EQ(after(seconds(3600), 110), seconds(89));
  EXPECT_EQ(after(seconds(1), 120), seconds(88));
}

TEST_F(TimeLeftTest, SaysNothingWhenAllIsDone) {
  after(seconds(0), 0);
  after(seconds(10), 100);
  EXPECT_EQ(after(seconds(10), 1000), std::nullopt);
}

TEST_F(TimeLeftTest, SaysNothingOfARunWithoutWork) {
  const TimeLeft::Clock::time_point start{};
  EXPECT_EQ(timeLeft.guess(0, 0, start), std::nullopt);
  EXPECT_EQ(timeLeft.guess(0, 0, start + seconds(10)), std::nullopt);
}

TEST(WorkOf, CountsFilesBesideTheirBytes) {
  EXPECT_GT(workOf(1000, 1'000'000), workOf(1, 1'000'000));
  EXPECT_GT(workOf(1, 1'000'000'000), workOf(1, 1'000'000));
  EXPECT_EQ(workOf(0, 0), 0);
}

}  // namespace

}  // namespace kestrova
