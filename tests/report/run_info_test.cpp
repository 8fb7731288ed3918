#include "report/run_info.h"

#include "report/run_folder.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct RunInfoTest : testing::Test {
  test::TemporaryFolder folder;
  std::shared_ptr<FileManager> files = systemFileManager();
  Path run = folder / "20261121T101502Z";
  RunInfo info{.id = {},
               .version = "1.2.3",
               .command = "organise",
               .options = {{QStringLiteral("size"), QStringLiteral("720p")}},
               .sources = {"/media/a", "/media/\xFF"},
               .target = "/home/anna/Pictures\xFE",
               .started = "2026-11-21T10:15:02Z",
               .ended = {},
               .result = {},
               .counts = {}};

  RunInfoTest() { std::filesystem::create_directories(run); }
  RunInfo readBack() const { return readRunInfo(*files, run).value(); }
};

TEST_F(RunInfoTest, ComesBackAsItWasWritten) {
  info.ended = "2026-11-21T10:16:00Z";
  info.result = "completed";
  info.counts = {{QStringLiteral("copied"), 3}};
  ASSERT_TRUE(writeRunInfo(*files, run, info));
  const RunInfo read = readBack();
  EXPECT_EQ(read.id, "20261121T101502Z");
  EXPECT_EQ(read.version, info.version);
  EXPECT_EQ(read.command, info.command);
  EXPECT_EQ(read.options, info.options);
  EXPECT_EQ(read.sources, info.sources);
  EXPECT_EQ(read.target, info.target);
  EXPECT_EQ(read.started, info.started);
  EXPECT_EQ(read.ended, info.ended);
  EXPECT_EQ(read.result, info.result);
  EXPECT_EQ(read.counts, info.counts);
}

TEST_F(RunInfoTest, HasNoEndWhileTheRunGoesOn) {
  ASSERT_TRUE(writeRunInfo(*files, run, info));
  EXPECT_THAT(test::readFile(infoFile(run)), Not(HasSubstr("result")));
  EXPECT_EQ(readBack().ended, "");
}

TEST_F(RunInfoTest, IsNothingWhereItIsDamagedOrMissing) {
  EXPECT_FALSE(readRunInfo(*files, run));
  test::writeFile(infoFile(run), "{\"target\":");
  EXPECT_FALSE(readRunInfo(*files, run));
}

}  // namespace

}  // namespace kestrova::report
