#include "support/failing_file_manager.h"
#include "support/gate.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::Gate;
using test::writePhoto;

class RunControl : public testing::Test {
 protected:
  void SetUp() override {
    for (char name = 'a'; name <= 'e'; ++name) {
      const Path photo =
          writePhoto(program.source / (std::string(1, name) + ".jpg"), static_cast<std::size_t>(1000 + name));
      test::setModified(photo, "2015:01:01 00:00:00");
    }
  }
  void start() {
    program.chooseFolders();
    program.press(controls().buttonStart);
  }
  /// Starts and returns with the first copy waiting at the gate, the window up to date.
  void startAndHoldFirstCopy() {
    files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
      copying.pass();
      return std::nullopt;
    };
    start();
    program.waitUntil([this] { return copying.isReached(); });
    program.settle();
  }
  /// The same with the scan waiting at the first file that it reads, or the planner at its first photo.
  void startAndHoldScan() { startAndHoldRead(1, scanning); }
  void startAndHoldPlanning() { startAndHoldRead(2, planning); }
  void startAndHoldRead(int stage, Gate& gate) {
    files->onRead = [this, stage, &gate](const Path&) -> std::optional<FileError> {
      if (manager().appStatus == stage) gate.pass();
      return std::nullopt;
    };
    start();
    program.waitUntil([&gate] { return gate.isReached(); });
    program.settle();
  }
  QString startTitle() { return controls().buttonStart->title(); }
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }
  OperationQueue& queue() { return *manager().processQueue; }

  std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  Gate copying;
  Gate planning;
  Gate scanning;
  test::HeadlessProgram program{files};
};

}  // namespace

TEST_F(RunControl, AsksForBothStepsFirst) {
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(program.status(), QStringLiteral("Please complete step 1 and 2 first"));
  manager().addSource(program.source);
  manager().setStatus(QString());
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(program.status(), QStringLiteral("Please complete step 1 and 2 first"));
  EXPECT_EQ(manager().processQueue, nullptr);
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
}

TEST_F(RunControl, AsksForASourceWhenThereIsOnlyATarget) {
  manager().setTarget(program.target);
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(program.status(), QStringLiteral("Please complete step 1 and 2 first"));
}

TEST_F(RunControl, IgnoresStopWhileIdle) {
  manager().stopProcess();
  program.settle();
  EXPECT_TRUE(program.statusTexts().isEmpty());
  EXPECT_FALSE(manager().hasstopped);
}

TEST_F(RunControl, CompletesARun) {
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

TEST_F(RunControl, CompletesEveryRunOnceWithItsOwnAssertion) {
  for (int run = 1; run <= 3; ++run) program.run();
  EXPECT_EQ(program.log.count(QStringLiteral("queue has completed")), 3);
  EXPECT_EQ(program.power->released(), (std::vector<std::uint32_t>{101, 102, 103}));
  EXPECT_EQ(manager().tAlreadyCount, 5);
  EXPECT_EQ(manager().tTotalCount, 0);
}

TEST_F(RunControl, ShowsPauseDisabledWhileItScans) {
  writePhoto(program.source / "z.jpg", 1000 + 'a', 'z');
  startAndHoldScan();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  EXPECT_FALSE(controls().buttonStart->isEnabled());
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  EXPECT_EQ(manager().appStatus, 1);
  scanning.open();
  program.waitUntilEnded();
}

TEST_F(RunControl, StopsAScan) {
  writePhoto(program.source / "a2.jpg", 1000 + 'a', 'z');
  startAndHoldScan();
  program.press(controls().buttonStop);
  scanning.open();
  program.waitUntilEnded();
  EXPECT_TRUE(program.log.holds(QStringLiteral("CANCELLLED")));
  EXPECT_EQ(program.status(), QStringLiteral("Stopped"));
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_FALSE(controls().sourceProgress->isAnimating());
  EXPECT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
  EXPECT_EQ(manager().appStatus, 1);
  EXPECT_TRUE(program.targetFiles().empty());
}

TEST_F(RunControl, PlansNothingWhenAScanIsStoppedAtItsLastFile) {
  writePhoto(program.source / "z.jpg", 1000 + 'a', 'z');
  startAndHoldScan();
  program.press(controls().buttonStop);
  scanning.open();
  program.waitUntilEnded();
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_EQ(manager().appStatus, 1);
  EXPECT_TRUE(program.targetFiles().empty());
}

TEST_F(RunControl, HoldsStartWhileItPlans) {
  startAndHoldPlanning();
  EXPECT_FALSE(controls().buttonStart->isEnabled());
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  EXPECT_TRUE(controls().processBar->isIndeterminate());
  EXPECT_TRUE(controls().processBar->isAnimating());
  EXPECT_TRUE(queue().isSuspended());
  EXPECT_EQ(manager().appStatus, 2);
  planning.open();
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 5U);
}

TEST_F(RunControl, StopsPlanningWithoutACompletionReport) {
  startAndHoldPlanning();
  program.press(controls().buttonStop);
  planning.open();
  program.waitUntilEnded();
  EXPECT_EQ(program.status(), QStringLiteral("Deciding operations 1"));
  EXPECT_FALSE(program.log.holds(QStringLiteral("queue has completed")));
  EXPECT_TRUE(program.power->released().empty());
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_TRUE(program.targetFiles().empty());
}

TEST_F(RunControl, EnablesPauseWhileItCopies) {
  startAndHoldFirstCopy();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  EXPECT_FALSE(controls().processBar->isIndeterminate());
  EXPECT_EQ(controls().processBar->maxValue(), 5);
  EXPECT_EQ(manager().appStatus, 3);
  EXPECT_EQ(queue().executingCount(), 1U);
  copying.open();
  program.waitUntilEnded();
}

TEST_F(RunControl, PausesAndContinuesWithoutLosingAFile) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Continue"));
  EXPECT_EQ(program.status(), QStringLiteral("Paused"));
  copying.open();
  program.waitUntil([this] { return queue().executingCount() == 0; });
  queue().waitUntilIdle();
  EXPECT_EQ(queue().operationCount(), 4U);
  EXPECT_EQ(program.targetFiles().size(), 1U);
  EXPECT_EQ(program.status(), QStringLiteral("Paused"));
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 5U);
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
}

TEST_F(RunControl, ShowsPauseAgainAndKeepsTheStatusWhenItContinues) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStart);
  program.settle();
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  EXPECT_EQ(program.status(), QStringLiteral("Paused"));
  copying.open();
  program.waitUntilEnded();
}

TEST_F(RunControl, StopsWhileCopyingAfterTheFileInHand) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStop);
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  copying.open();
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 1U);
  EXPECT_EQ(program.status(), QStringLiteral("Stopped"));
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Completed")));
  EXPECT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
}

TEST_F(RunControl, StopsWhilePaused) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStart);
  copying.open();
  program.waitUntil([this] { return queue().executingCount() == 0; });
  program.press(controls().buttonStop);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 1U);
  EXPECT_EQ(program.status(), QStringLiteral("Stopped"));
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_FALSE(controls().buttonStop->isEnabled());
}

TEST_F(RunControl, TakesUpAStoppedRunWhereItEnded) {
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

TEST_F(RunControl, KeepsTheErrorTextWhenTheVolumeIsFull) {
  int copies = 0;
  files->onStageCopy = [&copies](const Path&, const Path&) -> std::optional<FileError> {
    if (++copies == 2) return FileError{FileError::unspecifiedWrite, "full"};
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

TEST_F(RunControl, PausesByItselfWhenAnOperationRaisesAndCanContinue) {
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

TEST_F(RunControl, LeavesTheButtonsOfAScanThatFoundNothing) {
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

TEST_F(RunControl, StartsAfreshAfterAScanThatWasSuspended) {
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

TEST_F(RunControl, IgnoresWhatAnotherQueueOrKeyReports) {
  program.run();
  const OperationQueue other;
  manager().observeValueForKeyPath("operations", other);
  manager().observeValueForKeyPath("somethingElse", queue());
  EXPECT_EQ(program.log.count(QStringLiteral("queue has completed")), 1);
}

TEST_F(RunControl, UsesTheTargetOfTheMomentWhenItPlans) {
  startAndHoldPlanning();
  manager().setTarget(program.folder / "other");
  manager().deleteSource();
  planning.open();
  program.waitUntilEnded();
  EXPECT_EQ(test::filesBelow(program.folder / "other").size(), 5U);
}

TEST_F(RunControl, EndsWhenTheProgramEndsInTheMiddleOfARun) {
  startAndHoldFirstCopy();
  copying.open();
  program.interface.reset();
  ASSERT_FALSE(program.targetFiles().empty());
  for (const auto& file : program.targetFiles())
    EXPECT_GT(std::filesystem::file_size(program.target / file), 1000U);
}

TEST_F(RunControl, OrganisesTheTargetInsideASourceWithoutHarm) {
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

}  // namespace kestrova
