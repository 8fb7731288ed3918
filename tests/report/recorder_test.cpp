#include "report/recorder.h"

#include "report/run_folder.h"
#include "support/small_volume.h"
#include "support/temporary_folder.h"

#include <QJsonDocument>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using test::readFile;
using testing::SizeIs;

constexpr std::chrono::sys_seconds start(std::chrono::seconds(1400679902));

FileRow copied(std::uint64_t size) {
  return {.source = "/card/a.jpg", .verdict = Outcome::copied, .target = "a.jpg", .sourceSize = size};
}

struct RecorderTest : testing::Test {
  test::TemporaryFolder root;
  Path runs = root / "state/kestrova/runs";
  std::shared_ptr<FileManager> files = systemFileManager();
  RunInfo info{.version = "1.0", .command = "organise", .options = {}, .target = "/pictures", .counts = {}};

  std::unique_ptr<Recorder> begin() { return Recorder::begin(runs, info, start).value(); }
  RunInfo infoOf(const Recorder& recorder) const { return readRunInfo(*files, recorder.folder()).value(); }
};

}  // namespace

TEST_F(RecorderTest, BeginsWithWhatIsKnownOfTheRun) {
  const auto recorder = begin();
  EXPECT_EQ(recorder->folder(), runs / "20140521T134502Z");
  const RunInfo begun = infoOf(*recorder);
  EXPECT_EQ(begun.started, "2014-05-21T13:45:02Z");
  EXPECT_EQ(begun.ended, "");
  EXPECT_EQ(begun.target, Path("/pictures"));
  EXPECT_EQ(readFile(rowsFile(recorder->folder())), "");
}

TEST_F(RecorderTest, HoldsEachRowAfterAWhile) {
  const auto recorder = begin();
  recorder->add(copied(3));
  while (readFile(rowsFile(recorder->folder())).empty()) std::this_thread::yield();
  EXPECT_EQ(readFile(rowsFile(recorder->folder())), lineOf(copied(3)));
}

TEST_F(RecorderTest, EndsWithResultAndCounts) {
  const auto recorder = begin();
  recorder->add(copied(3));
  recorder->add(copied(4));
  recorder->add(FileRow{.source = "/b", .verdict = Outcome::resized, .sourceSize = 900, .targetSize = 50});
  recorder->add(UnreadableRow{.source = "/c"});
  recorder->add(LeftBehindRow{.source = "/d.heic", .extension = "heic", .sourceSize = 7});
  recorder->end("completed", start + std::chrono::seconds(3));
  const RunInfo ended = infoOf(*recorder);
  EXPECT_EQ(ended.result, "completed");
  EXPECT_EQ(ended.ended, "2014-05-21T13:45:05Z");
  EXPECT_EQ(QJsonDocument(ended.counts).toJson(QJsonDocument::Compact).toStdString(),
            R"({"copied":{"bytes":7,"files":2},"left-behind":{"bytes":7,"files":1},)"
            R"("resized":{"bytes":50,"files":1},"unreadable-folders":{"bytes":0,"files":1}})");
  EXPECT_EQ(ended.recordError, "");
}

TEST_F(RecorderTest, IsSeenToGoOnUntilItsEnd) {
  const auto recorder = begin();
  EXPECT_TRUE(isBeingWritten(rowsFile(recorder->folder())));
  recorder->end("stopped", start);
  EXPECT_FALSE(isBeingWritten(rowsFile(recorder->folder())));
  recorder->add(copied(3));
  recorder->end("completed", start);
  EXPECT_EQ(readFile(rowsFile(recorder->folder())), "");
  EXPECT_EQ(infoOf(*recorder).result, "stopped");
}

TEST_F(RecorderTest, KeepsTheLastFiftyRecords) {
  for (int i = 0; i < 52; ++i) {
    Recorder::begin(runs, info, start + std::chrono::seconds(i)).value()->end("completed", start);
  }
  EXPECT_THAT(runIds(runs), SizeIs(50));
}

TEST_F(RecorderTest, EndsEarlyOnAFullVolumeAndSaysSo) {
  const bool ran = test::withSmallVolume(std::size_t{256} * 1024, [this](const Path& volume) {
    runs = volume / "runs";
    const Path filler = test::writeFile(volume / "filler", std::string(100'000, 'x'));
    const auto recorder = begin();
    while (!recorder->error()) recorder->add(copied(3));
    EXPECT_EQ(recorder->error()->kind, FileError::Kind::noSpace);
    std::filesystem::remove(filler);
    const std::string rows = readFile(rowsFile(recorder->folder()));
    recorder->add(copied(4));
    recorder->end("completed", start);
    EXPECT_EQ(readFile(rowsFile(recorder->folder())), rows) << "a row after a torn one";
    EXPECT_EQ(infoOf(*recorder).recordError, "No space left on device");
    int whole = 0;
    ASSERT_TRUE(readRows(rowsFile(recorder->folder()), [&](const Row& row) {
      whole += std::get<FileRow>(row).source == Path("/card/a.jpg") ? 1 : 0;
      return true;
    }));
    EXPECT_EQ(whole, std::ranges::count(rows, '\n'));
    EXPECT_GT(whole, 100);
  });
  if (!ran) GTEST_SKIP() << "no volume can be mounted here";
}

TEST_F(RecorderTest, LeavesNoFolderWhereItCannotBegin) {
  const bool ran = test::withSmallVolume(std::size_t{64} * 1024, [this](const Path& volume) {
    runs = volume / "runs";
    std::filesystem::create_directories(runs);
    std::ofstream(volume / "filler") << std::string(100'000, 'x');  // as much as there is room for
    const auto begun = Recorder::begin(runs, info, start);
    ASSERT_FALSE(begun);
    EXPECT_EQ(begun.error().kind, FileError::Kind::noSpace);
    EXPECT_TRUE(std::filesystem::is_empty(runs));
  });
  if (!ran) GTEST_SKIP() << "no volume can be mounted here";
}

TEST_F(RecorderTest, CannotBeginWhereNoFolderCanBe) {
  runs = test::writeFile(root / "file", "") / "runs";
  EXPECT_FALSE(Recorder::begin(runs, info, start));
}

}  // namespace kestrova::report
