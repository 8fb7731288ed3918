#include "run_fixture.h"

namespace kestrova {

namespace {

using test::writePhoto;

class RunControl : public test::RunTest {};

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

TEST_F(RunControl, AsksForBothStepsAlsoWhileARunIsUnderWay) {
  startAndHoldFirstCopy();
  controls().sourceList->selectRowIndexes({0});
  manager().deleteSource();
  program.press(controls().buttonStart);
  program.settle();
  EXPECT_EQ(program.status(), QStringLiteral("Please complete step 1 and 2 first"));
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  EXPECT_FALSE(queue().isSuspended());
  copying.open();
  program.waitUntilEnded();
}

TEST_F(RunControl, IgnoresStopWhileIdle) {
  manager().stopProcess();
  program.settle();
  EXPECT_TRUE(program.statusTexts().isEmpty());
  EXPECT_FALSE(manager().hasstopped);
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
  program.settle();
  EXPECT_FALSE(controls().processBar->isAnimating());
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

TEST_F(RunControl, PlansNothingWhenTheQueueIsSuspendedAtTheLastFileOfAScan) {
  writePhoto(program.source / "z.jpg", 1000 + 'a', 'z');
  startAndHoldScan();
  manager().startProcess();
  scanning.open();
  queue().waitUntilIdle();
  program.settle();
  EXPECT_TRUE(queue().isSuspended());
  EXPECT_EQ(queue().operationCount(), 0U);
  EXPECT_FALSE(program.log.holds(QStringLiteral("SUSPENDED"))) << "the walk was over";
}

TEST_F(RunControl, ChangesTheControlsOfAStartByTheMainThreadsNextTurn) {
  program.chooseFolders();
  manager().startProcess();
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  program.waitUntilEnded();
}

TEST_F(RunControl, ChangesTheControlsOfPauseContinueAndStopByTheMainThreadsNextTurn) {
  startAndHoldFirstCopy();
  manager().startProcess();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Continue"));

  manager().startProcess();
  EXPECT_EQ(startTitle(), QStringLiteral("Continue"));
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Pause"));

  manager().startProcess();
  program.settle();
  controls().processBar->startAnimation();
  controls().sourceProgress->startAnimation();
  manager().stopProcess();
  EXPECT_EQ(startTitle(), QStringLiteral("Continue"));
  EXPECT_TRUE(controls().buttonStop->isEnabled());
  EXPECT_TRUE(queue().isSuspended());
  EXPECT_TRUE(controls().processBar->isAnimating());
  EXPECT_TRUE(controls().sourceProgress->isAnimating());
  program.settle();
  EXPECT_EQ(startTitle(), QStringLiteral("Start"));
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_FALSE(queue().isSuspended());
  EXPECT_FALSE(controls().processBar->isAnimating());
  EXPECT_FALSE(controls().sourceProgress->isAnimating());
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

TEST_F(RunControl, StopsWhileCopyingAfterTheCurrentFile) {
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

}  // namespace kestrova
