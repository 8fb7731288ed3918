#include "platform/volume_barrier.h"

#include "support/file_results.h"

#include <cerrno>
#include <vector>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::codeOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t kilobyte = 1024;

/// A volume that counts what is asked of it; files are named by their numbers.
struct BarrierTest : testing::Test {
  VolumeBarrier::Calls calls() {
    return {
        .makeVolumeDurable =
            [this] {
              ++barriers;
              now += barrierTakes;
              if (duringBarrier) duringBarrier();
              return barrierFails ? tl::make_unexpected(FileError{EIO, "broken"}) : FileResult<void>();
            },
        .makeDurable =
            [this](int file) {
              alone.push_back(file);
              return file == brokenFile ? tl::make_unexpected(FileError{EIO, "broken"}) : FileResult<void>();
            },
        .now = [this] { return now; }};
  }

  std::chrono::steady_clock::time_point now;
  std::chrono::seconds barrierTakes{0};
  bool barrierFails = false;
  std::function<void()> duringBarrier;
  int brokenFile = -1;
  int barriers = 0;
  std::vector<int> alone;
  VolumeBarrier barrier{calls()};
};

TEST_F(BarrierTest, CoversAllFilesThatWereComplete) {
  const auto first = barrier.add(kilobyte);
  const auto second = barrier.add(kilobyte);
  const auto third = barrier.add(kilobyte);
  EXPECT_TRUE(barrier.makeDurable(first, 1));
  EXPECT_TRUE(barrier.makeDurable(second, 2));
  EXPECT_TRUE(barrier.makeDurable(third, 3));
  EXPECT_EQ(barriers, 1);
  EXPECT_THAT(alone, IsEmpty());
}

TEST_F(BarrierTest, DoesNotCoverAFileThatWasCompletedWhileItRan) {
  std::uint64_t late = 0;
  const auto first = barrier.add(kilobyte);
  const auto second = barrier.add(kilobyte);
  duringBarrier = [&] {
    if (late == 0) late = barrier.add(kilobyte);
  };
  EXPECT_TRUE(barrier.makeDurable(first, 1));
  EXPECT_TRUE(barrier.makeDurable(second, 2));
  EXPECT_TRUE(barrier.makeDurable(late, 3));
  EXPECT_EQ(barriers, 1);
  EXPECT_THAT(alone, ElementsAre(3));
}

TEST_F(BarrierTest, IsNotUsedForAFileThatIsAlone) {
  EXPECT_TRUE(barrier.makeDurable(barrier.add(kilobyte), 1));
  barrier.add(kilobyte);
  barrier.remove();
  EXPECT_TRUE(barrier.makeDurable(barrier.add(kilobyte), 2));
  EXPECT_EQ(barriers, 0);
  EXPECT_THAT(alone, ElementsAre(1, 2));
}

TEST_F(BarrierTest, ThatFailsIsTracedToItsFile) {
  const auto first = barrier.add(kilobyte);
  const auto second = barrier.add(kilobyte);
  const auto third = barrier.add(kilobyte);
  barrierFails = true;
  brokenFile = 2;
  EXPECT_TRUE(barrier.makeDurable(first, 1));
  EXPECT_EQ(codeOf(barrier.makeDurable(second, 2)), EIO);
  EXPECT_TRUE(barrier.makeDurable(third, 3));
  EXPECT_EQ(barriers, 1);
  EXPECT_THAT(alone, ElementsAre(1, 2, 3));
  EXPECT_FALSE(barrier.isWorthIt());
}

TEST_F(BarrierTest, IsGivenUpWhenItTakesFarTooLong) {
  EXPECT_TRUE(barrier.isWorthIt());
  const auto first = barrier.add(kilobyte);
  const auto second = barrier.add(kilobyte);
  barrierTakes = std::chrono::seconds(10);
  EXPECT_TRUE(barrier.makeDurable(first, 1));
  EXPECT_TRUE(barrier.makeDurable(second, 2));
  EXPECT_FALSE(barrier.isWorthIt());
  const auto third = barrier.add(kilobyte);
  barrier.add(kilobyte);
  EXPECT_TRUE(barrier.makeDurable(third, 3));
  EXPECT_EQ(barriers, 1);
  EXPECT_THAT(alone, ElementsAre(3));
}

TEST_F(BarrierTest, MayTakeLongWhereMuchWasWritten) {
  constexpr std::uint64_t gigabyte = 1'000'000'000;
  const auto first = barrier.add(gigabyte);
  barrier.add(kilobyte);
  barrierTakes = std::chrono::seconds(10);
  EXPECT_TRUE(barrier.makeDurable(first, 1));
  EXPECT_TRUE(barrier.isWorthIt());
}

}  // namespace

}  // namespace kestrova
