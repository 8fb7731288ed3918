#include "run_fixture.h"

#include <cerrno>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::writePhoto;

class EndOfARun : public test::RunTest {};

}  // namespace

TEST_F(EndOfARun, CompletesARun) {
  program.run();
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_FALSE(controls().processBar->isAnimating());
  EXPECT_TRUE(program.log.holds(QStringLiteral("queue has completed")));
  EXPECT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
  EXPECT_EQ(program.targetFiles().size(), 5U);
  EXPECT_EQ(controls().processBar->doubleValue(), 5);
  EXPECT_TRUE(manager().starttime.has_value());
}

TEST_F(EndOfARun, CompletesEveryRunOnceWithItsOwnAssertion) {
  for (int run = 1; run <= 3; ++run) program.run();
  EXPECT_EQ(program.log.count(QStringLiteral("queue has completed")), 3);
  EXPECT_EQ(program.power->released(), (std::vector<std::uint32_t>{101, 102, 103}));
  EXPECT_EQ(manager().tAlreadyCount, 5);
  EXPECT_EQ(manager().tTotalCount, 0);
}

TEST_F(EndOfARun, StopsTheBarEvenWhenNothingElseHas) {
  startAndHoldFirstCopy();
  controls().processBar->startAnimation();
  copying.open();
  program.waitUntilEnded();
  EXPECT_FALSE(controls().processBar->isAnimating());
}

TEST_F(EndOfARun, RemembersWhenTheLastRunWasStarted) {
  Date now{.seconds = 3600};
  program.clock = [&now] { return now; };
  program.run();
  EXPECT_EQ(manager().starttime, now);
  now.seconds += 3600;
  program.run();
  EXPECT_EQ(manager().starttime, now);
}

TEST_F(EndOfARun, TakesUpAStoppedRunWhereItEnded) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStop);
  copying.open();
  program.waitUntilEnded();
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 5U);
  EXPECT_EQ(manager().tAlreadyCount, 1);
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_FALSE(manager().hasstopped);
}

TEST_F(EndOfARun, KeepsTheErrorTextWhenTheVolumeIsFull) {
  int copies = 0;
  files->onStageCopy = [&copies](const Path&, const Path&) -> std::optional<FileError> {
    if (++copies == 2) return FileError{ENOSPC, "full"};
    return std::nullopt;
  };
  program.run();
  EXPECT_EQ(program.status(), QStringLiteral("Not enough space!"));
  EXPECT_FALSE(program.statusTexts().contains(QStringLiteral("Completed")));
  EXPECT_TRUE(manager().haserror);
  EXPECT_EQ(program.targetFiles().size(), 1U);
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_EQ(program.power->released().size(), 1U);
  files->onStageCopy = nullptr;
  program.run();
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_FALSE(manager().haserror);
}

TEST_F(EndOfARun, ShowsStoppedEvenAfterAnError) {
  files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
    copying.pass();
    return FileError{ENOSPC, "full"};
  };
  start();
  program.waitUntil([this] { return copying.isReached(); });
  program.press(controls().buttonStop);
  copying.open();
  program.waitUntilEnded();
  EXPECT_TRUE(manager().haserror);
  EXPECT_TRUE(manager().hasstopped);
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Not enough space!")));
  EXPECT_FALSE(program.statusTexts().contains(QStringLiteral("Completed")));
  EXPECT_EQ(program.status(), QStringLiteral("Stopped"));
}

TEST_F(EndOfARun, PausesByItselfWhenAnOperationRaisesAndCanContinue) {
  int copies = 0;
  files->onStageCopy = [&copies](const Path&, const Path&) -> std::optional<FileError> {
    if (++copies == 2) throw std::runtime_error("on purpose");
    return std::nullopt;
  };
  start();
  program.waitUntil([this] { return program.status() == QStringLiteral("Error"); });
  queue().waitUntilIdle();
  EXPECT_TRUE(queue().isSuspended());
  EXPECT_EQ(queue().operationCount(), 3U);
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 4U);
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
}

TEST_F(EndOfARun, LeavesTheButtonsOfAScanThatFoundNothing) {
  std::filesystem::remove_all(program.source);
  program.run();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  EXPECT_FALSE(controls().buttonStart->isEnabled());
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  EXPECT_EQ(program.status(), QStringLiteral("Analyzing source folders"));
  EXPECT_FALSE(program.log.holds(QStringLiteral("queue has completed")));
  EXPECT_TRUE(program.power->released().empty());
  program.press(controls().buttonStop);
  program.settle();
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  EXPECT_FALSE(manager().hasstopped);
}

TEST_F(EndOfARun, StartsAfreshAfterAScanThatWasSuspended) {
  writePhoto(program.source / "e2.jpg", 1000 + 'a', 'z');
  writePhoto(program.source / "f.jpg", 1000 + 'a', 'y');
  startAndHoldScan();
  manager().startProcess();
  scanning.open();
  program.waitUntilEnded();
  EXPECT_TRUE(program.log.holds(QStringLiteral("SUSPENDED")));
  EXPECT_TRUE(program.power->released().empty());
  const auto suspended = manager().processQueue;
  manager().startProcess();
  program.waitUntilEnded();
  EXPECT_NE(manager().processQueue, suspended);
  EXPECT_EQ(manager().assertionID, 102U);
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
}

TEST_F(EndOfARun, ReleasesNoPowerAssertionOfAnEarlierRun) {
  program.run();
  ASSERT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
  program.power->isRefusing = true;
  program.run();
  EXPECT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
}

TEST_F(EndOfARun, IgnoresWhatAnotherQueueOrKeyReports) {
  program.run();
  const OperationQueue other;
  manager().observeValueForKeyPath("operations", other);
  manager().observeValueForKeyPath("somethingElse", queue());
  EXPECT_EQ(program.log.count(QStringLiteral("queue has completed")), 1);
}

// The first file is being planned when the target changes.
TEST_F(EndOfARun, UsesTheTargetOfTheMomentWhenItPlansAFile) {
  startAndHoldPlanning();
  manager().setTarget(program.folder / "other");
  manager().deleteSource();
  planning.open();
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 1U);
  EXPECT_EQ(test::filesBelow(program.folder / "other").size(), 4U);
}

TEST_F(EndOfARun, EndsWhenTheProgramEndsInTheMiddleOfARun) {
  startAndHoldFirstCopy();
  copying.open();
  program.interface.reset();
  ASSERT_FALSE(program.targetFiles().empty());
  constexpr std::size_t smallestWhole = 1000;  // no file of the source is smaller
  for (const auto& file : program.targetFiles())
    EXPECT_GT(std::filesystem::file_size(program.target / file), smallestWhole);
}

TEST_F(EndOfARun, OrganisesTheTargetInsideASourceWithoutHarm) {
  manager().addSource(program.folder.path());
  manager().setTarget(program.target);
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  const auto first = program.targetFiles();
  EXPECT_EQ(first.size(), 5U);
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles(), first);
  EXPECT_EQ(test::filesBelow(program.source).size(), 5U);
}

TEST_F(EndOfARun, IsAnnouncedOnlyWhenTheNamesAreOnTheDisk) {
  test::Gate confirming;
  files->onNamesDurable = [&]() -> std::optional<FileError> {
    confirming.pass();
    return std::nullopt;
  };
  start();
  program.waitUntil([&] { return confirming.isReached(); });
  program.settle();
  EXPECT_EQ(program.targetFiles().size(), 5U);
  EXPECT_FALSE(program.statusTexts().contains(QStringLiteral("Completed")));
  EXPECT_EQ(manager().runState().phase, RunPhase::executing);
  EXPECT_FALSE(program.log.holds(QStringLiteral("queue has completed")));
  confirming.open();
  program.waitUntilEnded();
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_EQ(manager().runState().end, RunEnd::completed);
}

TEST_F(EndOfARun, FailsWhenTheDiskDoesNotConfirmTheNames) {
  files->onNamesDurable = [] { return FileError{EIO, "Input/output error"}; };
  program.run();
  EXPECT_EQ(program.status(),
            QStringLiteral("The disk did not confirm what was written: Input/output error"));
  EXPECT_FALSE(program.statusTexts().contains(QStringLiteral("Completed")));
  EXPECT_TRUE(manager().haserror);
  EXPECT_EQ(manager().runState().end, RunEnd::error);
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
}

TEST_F(EndOfARun, FailsWhenTheDiskDoesNotConfirmWhatAStoppedRunWrote) {
  files->onNamesDurable = [] { return FileError{EIO, "Input/output error"}; };
  startAndHoldFirstCopy();
  program.press(controls().buttonStop);
  copying.open();
  program.waitUntilEnded();
  EXPECT_THAT(program.status().toStdString(), testing::HasSubstr("did not confirm"));
  EXPECT_EQ(manager().runState().end, RunEnd::error);
}

}  // namespace kestrova
