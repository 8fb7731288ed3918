#include "app/manager/planner_fixture.h"
#include "support/gate.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::nameOf;
using test::writeFile;

class PlannerStop : public test::PlannerTest {};

}  // namespace

TEST_F(PlannerStop, ShowsAnExceptionAndLeavesTheQueueSuspended) {
  writeVideo("a.mov", 500);
  const Path second = writeVideo("b.mov", 501);
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path != second) return std::nullopt;
    test::letTheMainThreadCatchUp();
    throw std::runtime_error("on purpose");
  };
  program.chooseFolders();
  program.press(controls().buttonStart);
  program.waitUntil([&] { return program.status().startsWith(QStringLiteral("EXCEPTION")); });
  program.waitUntil([&] { return manager().processQueue->executingCount() == 0; });
  EXPECT_EQ(program.status(), QStringLiteral("EXCEPTION copyFiles : on purpose"));
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Deciding operations 2")))
      << "the number is shown before the file is decided on";
  EXPECT_TRUE(program.log.holds(QStringLiteral("EXCEPTION copyFiles : on purpose")));
  EXPECT_TRUE(manager().processQueue->isSuspended());
  EXPECT_EQ(manager().processQueue->operationCount(), 1U);
  EXPECT_TRUE(program.targetFiles().empty());
}

TEST_F(PlannerStop, CancelledLeavesTheQueueSuspendedWithWhatItHadQueued) {
  writeVideo("a.mov", 500);
  const Path second = writeVideo("b.mov", 501);
  writeVideo("c.mov", 502);
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path == second) manager().processQueue->cancelAllOperations();
    return std::nullopt;
  };
  program.chooseFolders();
  program.press(controls().buttonStart);
  program.waitUntil([&] { return program.log.holds(QStringLiteral("CANCELLLED")); });
  program.waitUntil([&] { return manager().processQueue->executingCount() == 0; });
  EXPECT_TRUE(manager().processQueue->isSuspended());
  EXPECT_EQ(manager().processQueue->operationCount(), 2U);
  EXPECT_FALSE(program.log.holds(QStringLiteral("queue has completed")));
  manager().processQueue->setSuspended(false);
  program.waitUntilEnded();
  EXPECT_TRUE(program.targetFiles().empty());
}

TEST_F(PlannerStop, CancelsTheOperationThatItQueuesAfterAStop) {
  const Path clip = writeVideo("a.mov", 500);
  test::Gate atTheFile;
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path == clip) atTheFile.pass();
    return std::nullopt;
  };
  program.chooseFolders();
  program.press(controls().buttonStart);
  program.waitUntil([&] { return atTheFile.isReached(); });
  program.press(controls().buttonStop);
  atTheFile.open();
  program.waitUntilEnded();
  EXPECT_TRUE(program.targetFiles().empty());
  EXPECT_EQ(manager().tTotalCount, 0);
}

}  // namespace kestrova
