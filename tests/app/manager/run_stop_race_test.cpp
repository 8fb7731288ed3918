#include "run_fixture.h"

#include <chrono>
#include <thread>

namespace kestrova {

namespace {

using test::Gate;

/// What happens to a run whose stages go on for a while after the user has stopped it or closed the program.
class RunStopRace : public test::RunTest {
 protected:
  std::shared_ptr<InvocationOperation> cancelledStage() {
    manager().processQueue = std::make_shared<OperationQueue>();
    const auto stage = std::make_shared<InvocationOperation>();
    stage->cancel();
    return stage;
  }
  void expectControlsAtRest() {
    EXPECT_EQ(startTitle(), QStringLiteral("Start"));
    EXPECT_TRUE(controls().buttonStart->isEnabled());
    EXPECT_FALSE(controls().buttonStop->isEnabled());
    EXPECT_FALSE(controls().processBar->isAnimating());
    EXPECT_FALSE(controls().sourceProgress->isAnimating());
  }
  /// Destroys the program while a worker waits at the gate, and lets the worker go on at the same time.
  void destroyWhileHeldAt(Gate& gate) {
    std::thread opener([&gate] {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      gate.open();
    });
    program.interface.reset();
    opener.join();
  }
};

}  // namespace

TEST_F(RunStopRace, DestroyingTheProgramWhileItPlansIsHarmless) {
  startAndHoldPlanning();
  destroyWhileHeldAt(planning);
  EXPECT_TRUE(program.targetFiles().empty());
}

TEST_F(RunStopRace, DestroyingTheProgramWhileItCopiesAPhotoThatDoesNotDecodeIsHarmless) {
  controls().comboResolution->chooseItem(1);
  startAndHoldFirstCopy();
  destroyWhileHeldAt(copying);
  EXPECT_EQ(program.targetFiles().size(), 1U);
}

TEST_F(RunStopRace, ACancelledScanChangesNoControl) {
  program.chooseFolders();
  manager().analyseSourceOperation(*cancelledStage());
  program.settle();
  expectControlsAtRest();
  EXPECT_TRUE(controls().sourceProgress->isHidden());
}

TEST_F(RunStopRace, ACancelledPlannerChangesNoControl) {
  program.chooseFolders();
  const auto planner = cancelledStage();
  manager().fileList.add("", program.source / "a.jpg", 1097);
  manager().analyseAndDecideOperation(*planner);
  program.settle();
  expectControlsAtRest();
}

TEST_F(RunStopRace, AStopWhileTheDesktopIsAskedToStayAwakeLeavesTheControlsAtRest) {
  Gate asking;
  program.power->onCreate = [&asking] { asking.pass(); };
  start();
  program.waitUntil([&asking] { return asking.isReached(); });
  program.press(controls().buttonStop);
  program.settle();
  expectControlsAtRest();
  asking.open();
  program.waitUntilEnded();
  expectControlsAtRest();
  EXPECT_EQ(program.status(), QStringLiteral("Stopped"));
}

TEST_F(RunStopRace, TheNextRunStartsAfterAStopInAnyStage) {
  startAndHoldPlanning();
  program.press(controls().buttonStop);
  planning.open();
  program.waitUntilEnded();
  expectControlsAtRest();
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), 5U);
}

TEST_F(RunStopRace, ALabelThatWaitsToBeShownDoesNotKeepBackThoseOfTheNextRun) {
  program.chooseFolders();
  manager().processQueue = std::make_shared<OperationQueue>();
  manager().increaseSourceCount("jpg", 1);
  manager().increaseSourceDuplicate("jpg", 1);
  const auto scan = std::make_shared<InvocationOperation>();
  test::writePhoto(program.source / "a2.jpg", 1000 + 'a');
  manager().analyseSourceOperation(*scan);
  program.waitUntilEnded();
  EXPECT_EQ(controls().lblPhotoCount->stringValue(), QStringLiteral("5"));
  EXPECT_EQ(controls().lblDuplicateCount->stringValue(), QStringLiteral("1"));
}

}  // namespace kestrova
