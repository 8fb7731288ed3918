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

TEST_F(PlannerStop, ShowsAnExceptionOfTheSameFileWithSeveralJobs) {
  for (const char* const name : {"a.mov", "b.mov", "c.mov", "d.mov"})
    writeVideo(name, 500 + std::size_t(name[0]));
  files->onAttributes = [third = program.source / "c.mov"](const Path& path) -> std::optional<FileError> {
    if (path == third) throw std::runtime_error("on purpose");
    return std::nullopt;
  };
  test::HeadlessProgram several{files, volatileUserDefaults(), 4};
  std::vector<Verdict> verdicts;
  several.manager().verdictListener = [&](const Verdict& verdict) { verdicts.push_back(verdict); };
  several.chooseFolders();
  several.manager().addSource(program.source);
  several.press(several.interface->buttonStart);
  several.waitUntil([&] { return several.status().startsWith(QStringLiteral("EXCEPTION")); });
  several.waitUntil([&] { return several.manager().processQueue->executingCount() == 0; });
  EXPECT_EQ(several.status(), QStringLiteral("EXCEPTION copyFiles : on purpose"));
  EXPECT_EQ(several.manager().processQueue->operationCount(), 2U);
  ASSERT_EQ(verdicts.size(), 2U);
  EXPECT_EQ(verdicts[0].source, program.source / "c.mov");
  EXPECT_EQ(verdicts[0].outcome, Outcome::failed);
  EXPECT_EQ(verdicts[1].source, program.source / "d.mov");
  EXPECT_EQ(verdicts[1].outcome, Outcome::notReached);
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
