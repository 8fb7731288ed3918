#include "run_fixture.h"

namespace kestrova {

namespace {

class RunStateOfARun : public test::RunTest {
 protected:
  RunPhase phase() { return manager().runState().phase; }
  std::optional<RunEnd> end() { return manager().runState().end; }
};

}  // namespace

TEST_F(RunStateOfARun, IsIdleBeforeTheFirst) {
  EXPECT_EQ(manager().runState(), RunState());
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(phase(), RunPhase::idle) << "a start without folders is none";
}

TEST_F(RunStateOfARun, FollowsItsStages) {
  test::writePhoto(program.source / "f.jpg", 1000 + 'a', 'z');
  files->onRead = [this](const Path&) -> std::optional<FileError> {
    (manager().appStatus == 1 ? scanning : planning).pass();
    return std::nullopt;
  };
  files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
    copying.pass();
    return std::nullopt;
  };
  start();
  EXPECT_EQ(phase(), RunPhase::scanning);
  program.waitUntil([this] { return scanning.isReached(); });
  EXPECT_EQ(phase(), RunPhase::scanning);
  scanning.open();
  program.waitUntil([this] { return planning.isReached(); });
  EXPECT_EQ(phase(), RunPhase::planning);
  EXPECT_FALSE(manager().runState().isPaused) << "the planner holds the queue, but works";
  planning.open();
  program.waitUntil([this] { return copying.isReached(); });
  EXPECT_EQ(phase(), RunPhase::executing);
  EXPECT_EQ(end(), std::nullopt);
  copying.open();
  program.waitUntilEnded();
  EXPECT_EQ(manager().runState(), (RunState{.phase = RunPhase::ended, .end = RunEnd::completed}));
}

TEST_F(RunStateOfARun, IsKnownToHaveEndedOnlyAfterAllThatItPosted) {
  start();
  program.waitUntil([this] { return phase() == RunPhase::ended; });
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
}

// The block that ends the state of a run may still be waiting when the next run starts.
TEST_F(RunStateOfARun, IsNotEndedByTheRunBefore) {
  start();
  queue().waitUntilIdle();
  test::writePhoto(program.source / "f.jpg", 1000 + 'a', 'z');
  files->onRead = [this](const Path&) -> std::optional<FileError> {
    if (manager().appStatus == 1) scanning.pass();
    return std::nullopt;
  };
  program.press(controls().buttonStart);
  program.waitUntil([this] { return scanning.isReached(); });
  program.settle();
  EXPECT_EQ(phase(), RunPhase::scanning);
  scanning.open();
  program.waitUntilEnded();
  EXPECT_EQ(end(), RunEnd::completed);
}

TEST_F(RunStateOfARun, IsPausedUntilItIsContinued) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStart);
  EXPECT_TRUE(manager().runState().isPaused);
  EXPECT_EQ(phase(), RunPhase::executing);
  program.settle();
  program.press(controls().buttonStart);
  EXPECT_FALSE(manager().runState().isPaused);
  copying.open();
  program.waitUntilEnded();
  EXPECT_EQ(end(), RunEnd::completed);
}

TEST_F(RunStateOfARun, EndsAsStoppedInEveryStage) {
  for (int stage = 0; stage < 3; ++stage) {
    std::array gates{&scanning, &planning, &copying};
    files->onRead = [this](const Path&) -> std::optional<FileError> {
      (manager().appStatus == 1 ? scanning : planning).pass();
      return std::nullopt;
    };
    files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
      copying.pass();
      return std::nullopt;
    };
    test::writePhoto(program.source / "f.jpg", 1000 + 'a', 'z');
    for (int open = 0; open < stage; ++open) gates.at(static_cast<std::size_t>(open))->open();
    start();
    program.waitUntil([&] { return gates.at(static_cast<std::size_t>(stage))->isReached(); });
    program.press(controls().buttonStop);
    gates.at(static_cast<std::size_t>(stage))->open();
    program.waitUntilEnded();
    EXPECT_EQ(manager().runState(), (RunState{.phase = RunPhase::ended, .end = RunEnd::stopped}));
  }
}

TEST_F(RunStateOfARun, EndsWithNothingFound) {
  std::filesystem::remove_all(program.source);
  program.run();
  EXPECT_EQ(manager().runState(), (RunState{.phase = RunPhase::ended, .end = RunEnd::nothingFound}));
}

TEST_F(RunStateOfARun, EndsForWantOfSpace) {
  files->onStageCopy = [](const Path&, const Path&) -> std::optional<FileError> {
    return FileError{ENOSPC, "full"};
  };
  program.run();
  EXPECT_EQ(end(), RunEnd::outOfSpace);
}

TEST_F(RunStateOfARun, IsHaltedByAnExceptionUntilItIsContinued) {
  files->onStageCopy = [](const Path& from, const Path&) -> std::optional<FileError> {
    if (from.filename() == "b.jpg") throw std::runtime_error("on purpose");
    return std::nullopt;
  };
  start();
  program.waitUntil([this] { return manager().runState().isHalted; });
  EXPECT_EQ(end(), RunEnd::error);
  program.press(controls().buttonStart);
  EXPECT_FALSE(manager().runState().isHalted);
  program.waitUntilEnded();
  EXPECT_EQ(end(), RunEnd::completed);
}

TEST_F(RunStateOfARun, EndsInErrorWhenItIsStoppedAfterAnException) {
  files->onStageCopy = [](const Path&, const Path&) -> std::optional<FileError> {
    throw std::runtime_error("on purpose");
  };
  start();
  program.waitUntil([this] { return manager().runState().isHalted; });
  program.press(controls().buttonStop);
  program.waitUntilEnded();
  EXPECT_EQ(manager().runState(), (RunState{.phase = RunPhase::ended, .end = RunEnd::error}));
}

}  // namespace kestrova
