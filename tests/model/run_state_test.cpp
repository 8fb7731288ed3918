#include "model/run_state.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

constexpr RunState executing{.phase = RunPhase::executing};

}  // namespace

TEST(RunState, BeginsWithoutARun) {
  const RunState state;
  EXPECT_EQ(state.phase, RunPhase::idle);
  EXPECT_FALSE(state.isRunning());
}

TEST(RunState, CompletesWhenNothingElseWasNoted) {
  RunState state = executing;
  EXPECT_TRUE(state.isRunning());
  state.finish();
  EXPECT_EQ(state.phase, RunPhase::ended);
  EXPECT_EQ(state.end, RunEnd::completed);
  EXPECT_FALSE(state.isRunning());
}

TEST(RunState, CountsAsAnErrorWhenItEndsTooEarlyWithoutAReason) {
  for (const auto phase : {RunPhase::scanning, RunPhase::planning}) {
    RunState state{.phase = phase};
    state.finish();
    EXPECT_EQ(state.end, RunEnd::error);
  }
}

TEST(RunState, KeepsTheFirstReasonOfItsEnd) {
  RunState state = executing;
  state.willEnd(RunEnd::outOfSpace);
  state.willEnd(RunEnd::stopped);
  state.finish();
  EXPECT_EQ(state.end, RunEnd::outOfSpace);
}

TEST(RunState, ThatAnExceptionHaltedCanGoOnAndComplete) {
  RunState state = executing;
  state.halt();
  EXPECT_TRUE(state.isPaused);
  EXPECT_TRUE(state.isHalted);
  state.forgetError();
  state.resume();
  EXPECT_FALSE(state.isPaused);
  EXPECT_FALSE(state.isHalted);
  state.finish();
  EXPECT_EQ(state.end, RunEnd::completed);
}

TEST(RunState, StaysStoppedWhenAnExceptionHaltsItThen) {
  RunState state = executing;
  state.willEnd(RunEnd::stopped);
  state.halt();
  EXPECT_TRUE(state.isHalted);
  EXPECT_EQ(state.end, RunEnd::stopped);
}

TEST(RunState, ForgetsNoOtherReasonThanAnError) {
  RunState state = executing;
  state.willEnd(RunEnd::stopped);
  state.forgetError();
  EXPECT_EQ(state.end, RunEnd::stopped);
}

TEST(RunState, IsNotPausedOnceItHasEnded) {
  RunState state = executing;
  state.halt();
  state.finish();
  EXPECT_FALSE(state.isPaused);
  EXPECT_FALSE(state.isHalted);
  EXPECT_EQ(state.end, RunEnd::error);
}

}  // namespace kestrova
