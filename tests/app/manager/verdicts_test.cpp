#include "run_fixture.h"

#include <map>
#include <mutex>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::writePhoto;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

/// Collects what becomes of each file; five photos, "a.jpg" to "e.jpg".
class Verdicts : public test::RunTest {
 protected:
  void SetUp() override {
    test::RunTest::SetUp();
    manager().verdictListener = [this](const Verdict& verdict) {
      const std::lock_guard lock(mutex_);
      all_.push_back(verdict);
    };
  }
  /// How often each outcome was announced.
  std::map<Outcome, int> outcomes() {
    const std::lock_guard lock(mutex_);
    std::map<Outcome, int> counts;
    for (const Verdict& verdict : all_) ++counts[verdict.outcome];
    return counts;
  }
  std::vector<Verdict> of(const char* name) {
    const std::lock_guard lock(mutex_);
    std::vector<Verdict> found;
    for (const Verdict& verdict : all_) {
      if (verdict.source == program.source / name) found.push_back(verdict);
    }
    return found;
  }
  void expectOneVerdictForEachFile() {
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg", "d.jpg", "e.jpg"})
      EXPECT_EQ(of(name).size(), 1U) << name;
  }
  /// Makes the copy of "a.jpg" fail.
  void failFirstCopy(const FileError& error) {
    files->onStageCopy = [error](const Path& from, const Path&) -> std::optional<FileError> {
      return from.filename() == "a.jpg" ? std::optional(error) : std::nullopt;
    };
  }

 private:
  std::mutex mutex_;
  std::vector<Verdict> all_;
};

}  // namespace

TEST_F(Verdicts, TellOfEveryFileOnce) {
  program.run();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::copied, 5)));
  expectOneVerdictForEachFile();
}

TEST_F(Verdicts, OnACopyHoldSizesAndTimesOfBothFiles) {
  program.run();
  const auto verdicts = of("a.jpg");
  ASSERT_EQ(verdicts.size(), 1U);
  const auto source = systemFileManager()->attributesOfItem(program.source / "a.jpg").value();
  EXPECT_EQ(verdicts[0].sourceSize, source.size);
  EXPECT_EQ(verdicts[0].sourceModified, source.modified);
  EXPECT_EQ(verdicts[0].targetSize, source.size);
  EXPECT_EQ(verdicts[0].targetModified, source.modified);
}

TEST_F(Verdicts, TellAFileWhoseNameAnotherOfTheRunHas) {
  std::filesystem::remove(program.source / "e.jpg");
  const Path twin = writePhoto(program.source / "e.jpg", 1000 + 'a', 'z');
  test::setModified(twin, "2015:01:01 00:00:00");
  program.run();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::copied, 4), Pair(Outcome::nameTaken, 1)));
  EXPECT_EQ(of("e.jpg").at(0).target, of("a.jpg").at(0).target);
  EXPECT_EQ(manager().targetExistCount, 1);
  EXPECT_EQ(controls().lblTargetExistCount->stringValue(), QStringLiteral("1"));
}

TEST_F(Verdicts, ReportATargetThatAnotherProgramCreatedAsExisting) {
  failFirstCopy({EEXIST, "File exists"});
  program.run();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::copied, 4), Pair(Outcome::exists, 1)));
  EXPECT_EQ(manager().targetExistCount, 1);
  EXPECT_EQ(manager().tAlreadyCount, 0);
}

TEST_F(Verdicts, TellASourceThatCannotBeReadFromATargetThatCannotBeWritten) {
  failFirstCopy({EIO, "broken", FileError::Kind::unreadable});
  program.run();
  EXPECT_EQ(of("a.jpg").at(0).outcome, Outcome::unreadable);
  EXPECT_EQ(of("a.jpg").at(0).error, "broken");
}

TEST_F(Verdicts, TellWhatAStoppedRunDidNotReach) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStop);
  copying.open();
  program.waitUntilEnded();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::copied, 1), Pair(Outcome::notReached, 4)));
  expectOneVerdictForEachFile();
  EXPECT_EQ(of("e.jpg").at(0).sourceSize, 1000U + 'e');
  EXPECT_TRUE(of("e.jpg").at(0).target.has_value());
}

TEST_F(Verdicts, TellWhatAFullVolumeLeftUnreached) {
  failFirstCopy({ENOSPC, "full"});
  program.run();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::failed, 1), Pair(Outcome::notReached, 4)));
  expectOneVerdictForEachFile();
}

TEST_F(Verdicts, TellOfEveryFileWhenThePlannerIsStopped) {
  startAndHoldPlanning();
  program.press(controls().buttonStop);
  planning.open();
  program.waitUntilEnded();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::notReached, 5)));
  expectOneVerdictForEachFile();
}

TEST_F(Verdicts, TellOfEveryFileFoundWhenTheScanIsStopped) {
  writePhoto(program.source / "f.jpg", 1000 + 'a', 'z');
  startAndHoldScan();
  program.press(controls().buttonStop);
  scanning.open();
  program.waitUntilEnded();
  EXPECT_EQ(outcomes()[Outcome::notReached], manager().sTotalCount);
  EXPECT_EQ(outcomes().size(), 1U);
}

TEST_F(Verdicts, TellOfEveryFileWhenThePlannerMeetsAnException) {
  files->onAttributes = [this](const Path& path) -> std::optional<FileError> {
    if (path == program.source / "c.jpg") throw std::runtime_error("on purpose");
    return std::nullopt;
  };
  start();
  program.waitUntil([this] { return manager().runState().isHalted; });
  program.press(controls().buttonStop);
  program.waitUntilEnded();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::failed, 1), Pair(Outcome::notReached, 4)));
  expectOneVerdictForEachFile();
  EXPECT_EQ(of("c.jpg").at(0).error, "on purpose");
}

TEST_F(Verdicts, TellOfTheFileThatRaisedAnException) {
  files->onStageCopy = [](const Path& from, const Path&) -> std::optional<FileError> {
    if (from.filename() == "b.jpg") throw std::runtime_error("on purpose");
    return std::nullopt;
  };
  start();
  program.waitUntil([this] { return manager().runState().isHalted; });
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_THAT(outcomes(), ElementsAre(Pair(Outcome::copied, 4), Pair(Outcome::failed, 1)));
  EXPECT_EQ(of("b.jpg").at(0).error, "on purpose");
}

}  // namespace kestrova
