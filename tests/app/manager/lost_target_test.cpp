#include "run_fixture.h"

#include <cerrno>
#include <map>
#include <mutex>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using Failure = test::FailingFileManager::Failure;
using testing::ElementsAre;
using testing::Pair;

/// Runs over five files, whose target is taken away in the middle.
class LostTarget : public test::RunTest {
 protected:
  LostTarget() {
    manager().verdictListener = [this](const Verdict& verdict) {
      const std::lock_guard lock(mutex_);
      ++outcomes_[verdict.outcome];
      if (verdict.outcome == Outcome::failed) reasons_.push_back(verdict.error);
    };
  }
  /// Fails from the second call on.
  static auto fromTheSecondOn(FileError error) {
    return [error, isFirst = true](const auto&...) mutable {
      return std::exchange(isFirst, false) ? Failure() : Failure(error);
    };
  }
  void expectEndedByOneFailure() {
    EXPECT_EQ(manager().runState().end, RunEnd::error);
    EXPECT_TRUE(manager().haserror);
    EXPECT_THAT(reasons_, ElementsAre("gone"));
    EXPECT_EQ(program.status(), QStringLiteral("The target folder cannot be used: gone"));
    EXPECT_EQ(startTitle(), QStringLiteral("Start"));
    EXPECT_TRUE(controls().buttonStart->isEnabled());
    EXPECT_FALSE(controls().buttonStop->isEnabled());
    EXPECT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
  }

  std::mutex mutex_;
  std::map<Outcome, int> outcomes_;
  std::vector<std::string> reasons_;
};

}  // namespace

TEST_F(LostTarget, EndsTheRunAtTheFirstFileThatCannotBeCopied) {
  for (const int code : {EIO, ENODEV, ENXIO, EROFS, ESTALE, ENOTCONN}) {
    files->onStageCopy = fromTheSecondOn({code, "gone"});
    std::filesystem::remove_all(program.target);
    outcomes_.clear();
    reasons_.clear();
    program.run();
    EXPECT_EQ(manager().runState().end, RunEnd::error);
    EXPECT_THAT(reasons_, ElementsAre("gone"));
    EXPECT_THAT(outcomes_, ElementsAre(Pair(Outcome::copied, 1), Pair(Outcome::failed, 1),
                                       Pair(Outcome::notReached, 3)));
  }
}

TEST_F(LostTarget, LeavesTheControlsAtRest) {
  files->onStageCopy = fromTheSecondOn({EROFS, "gone"});
  program.run();
  expectEndedByOneFailure();
}

TEST_F(LostTarget, EndsTheRunWhileItIsPlanned) {
  files->onAttributes = [this, calls = 0](const Path& path) mutable -> Failure {
    const bool isInTarget = path.native().starts_with(program.target.native());
    return isInTarget && ++calls > 1 ? Failure({EIO, "gone"}) : std::nullopt;
  };
  program.run();
  expectEndedByOneFailure();
  EXPECT_THAT(outcomes_, ElementsAre(Pair(Outcome::failed, 1), Pair(Outcome::notReached, 4)));
  program.run();
}

TEST_F(LostTarget, IsNotWhatASourceThatCannotBeReadMeans) {
  files->onStageCopy = fromTheSecondOn({.code = EIO, .message = "gone", .kind = FileError::Kind::unreadable});
  program.run();
  EXPECT_EQ(manager().runState().end, RunEnd::completed);
  EXPECT_THAT(outcomes_, ElementsAre(Pair(Outcome::copied, 1), Pair(Outcome::unreadable, 4)));
}

TEST_F(LostTarget, IsNotWhatOneFileThatCannotBeWrittenMeans) {
  files->onStageCopy = fromTheSecondOn({EACCES, "gone"});
  program.run();
  EXPECT_EQ(manager().runState().end, RunEnd::completed);
  EXPECT_THAT(outcomes_, ElementsAre(Pair(Outcome::copied, 1), Pair(Outcome::failed, 4)));
}

TEST_F(LostTarget, AFolderThatCannotBeCreatedIsNamedByItsFiles) {
  files->onCreateDirectory = [](const Path&) { return Failure({EACCES, "no folder"}); };
  program.run();
  EXPECT_THAT(reasons_, testing::AllOf(testing::SizeIs(5), testing::Each("no folder")));
}

TEST_F(LostTarget, AFolderThatFindsNoRoomEndsTheRun) {
  files->onCreateDirectory = [](const Path&) { return Failure({ENOSPC, "full"}); };
  program.run();
  EXPECT_THAT(reasons_, ElementsAre("full"));
  EXPECT_EQ(program.status(), QStringLiteral("Not enough space!"));
  EXPECT_EQ(manager().runState().end, RunEnd::outOfSpace);
}

}  // namespace kestrova
