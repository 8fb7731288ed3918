#include "report/run_folder.h"

#include "platform/append_file.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

// 21 November 2026, 10:15:02 UTC
constexpr std::chrono::sys_seconds start{std::chrono::seconds(1795256102)};

struct RunFolder : testing::Test {
  test::TemporaryFolder folder;
  Path runs = folder / "state" / "runs";
};

TEST_F(RunFolder, IsNamedByItsStartInUtcAndPrivate) {
  const auto run = createRunFolder(runs, start);
  ASSERT_TRUE(run);
  EXPECT_EQ(*run, runs / "20261121T101502Z");
  EXPECT_EQ(fs::status(*run).permissions(), fs::perms::owner_all);
}

TEST_F(RunFolder, CountsOnWhereItsNameIsTaken) {
  for (const char* name : {"20261121T101502Z", "20261121T101502Z-2", "20261121T101502Z-3"}) {
    EXPECT_EQ(createRunFolder(runs, start).value(), runs / name);
  }
}

TEST_F(RunFolder, SaysWhyItCannotBeCreated) {
  test::writeFile(runs, "a file in the way");
  EXPECT_EQ(createRunFolder(runs, start).error().code, ENOTDIR);
}

TEST_F(RunFolder, IsListedNewestFirstByItsNumberToo) {
  for (int i = 0; i < 11; ++i) createRunFolder(runs, start);
  createRunFolder(runs, start - std::chrono::hours(1));
  const auto ids = runIds(runs);
  ASSERT_EQ(ids.size(), 12U);
  EXPECT_EQ(ids.front(), "20261121T101502Z-11");
  EXPECT_EQ(ids[1], "20261121T101502Z-10");
  EXPECT_EQ(ids[10], "20261121T101502Z");
  EXPECT_EQ(ids.back(), "20261121T091502Z");
}

TEST_F(RunFolder, LeavesOtherThingsUnlisted) {
  for (const char* name : {"notes", "20261121T101502Z-", "20261121T101502Z-2x", "20261121T101502Zx"}) {
    fs::create_directories(runs / name);
  }
  EXPECT_THAT(runIds(runs), IsEmpty());
  EXPECT_THAT(runIds(runs / "missing"), IsEmpty());
}

TEST_F(RunFolder, GoesWhenItIsOldExceptWhileItIsBeingWritten) {
  const Path active = createRunFolder(runs, start).value();
  const auto rows = AppendFile::create(rowsFile(active));
  ASSERT_TRUE(rows);
  for (int i = 1; i <= 3; ++i) createRunFolder(runs, start + std::chrono::seconds(i));
  removeOldRuns(runs, 2);
  EXPECT_THAT(runIds(runs), ElementsAre("20261121T101505Z", "20261121T101504Z", "20261121T101502Z"));
}

TEST(RunsFolder, FollowsTheEnvironment) {
  const test::EnvironmentVariable home("HOME", "/home/anna");
  const test::EnvironmentVariable state("XDG_STATE_HOME", "/state");
  EXPECT_EQ(runsFolder(), Path("/state/kestrova/runs"));
}

TEST(RunsFolder, IsBelowTheHomeFolderByDefault) {
  const test::EnvironmentVariable home("HOME", "/home/anna");
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative"}) {
    const test::EnvironmentVariable state("XDG_STATE_HOME", unusable);
    EXPECT_EQ(runsFolder(), Path("/home/anna/.local/state/kestrova/runs"));
  }
}

TEST(RunsFolder, IsUnknownWithoutAHomeFolder) {
  const test::EnvironmentVariable state("XDG_STATE_HOME", nullptr);
  const test::EnvironmentVariable home("HOME", nullptr);
  EXPECT_EQ(runsFolder(), std::nullopt);
}

}  // namespace

}  // namespace kestrova::report
