#include "platform/append_file.h"
#include "report/content.h"
#include "report/run_folder.h"
#include "run_fixture.h"
#include "support/sample_media.h"

#include <map>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using report::FileRow;
using report::LeftBehindRow;
using report::UnreadableRow;
using test::writeFile;
using testing::ElementsAre;
using testing::SizeIs;

/// A recorded run over five photos, "a.jpg" to "e.jpg".
class Record : public test::RunTest {
 protected:
  Path folder() const { return program.runs / report::runIds(program.runs).at(0); }
  report::RunInfo info() const { return report::readRunInfo(*systemFileManager(), folder()).value(); }

  template <typename Kind>
  std::vector<Kind> rows() const {
    std::vector<Kind> found;
    const auto read = report::readRows(report::rowsFile(folder()), [&](const report::Row& row) {
      if (const auto* kind = std::get_if<Kind>(&row)) found.push_back(*kind);
      return true;
    });
    EXPECT_TRUE(read);
    return found;
  }
  /// The verdicts by the sources' names.
  std::map<std::string, Outcome> verdicts() const {
    std::map<std::string, Outcome> found;
    for (const FileRow& row : rows<FileRow>()) found[row.source.filename()] = row.verdict;
    return found;
  }
};

}  // namespace

TEST_F(Record, HoldsWhatTheRunWasToDoAndWhatItCameTo) {
  controls().comboResolution->chooseItem(indexOf(Resolution::fit720p));
  program.run();
  const report::RunInfo run = info();
  EXPECT_EQ(run.command, "organise");
  EXPECT_THAT(run.sources, ElementsAre(program.source));
  EXPECT_EQ(run.target, program.target);
  EXPECT_EQ(run.result, "completed");
  EXPECT_EQ(run.options[QLatin1String("size")].toString(), QStringLiteral("720p"));
  EXPECT_EQ(run.options[QLatin1String("upright")].toBool(), true);
  EXPECT_EQ(run.counts[QLatin1String("copied")][QLatin1String("files")].toInt(), 5);
  EXPECT_EQ(manager().recordFailure(), "");
}

TEST_F(Record, HasARowForEachFile) {
  test::writePhoto(program.source / "z.jpg", 1097);  // as a.jpg
  program.run();
  EXPECT_THAT(rows<FileRow>(), SizeIs(6));
  EXPECT_EQ(verdicts()["a.jpg"], Outcome::copied);
  EXPECT_EQ(verdicts()["z.jpg"], Outcome::duplicate);
}

TEST_F(Record, SaysWhereAFileWent) {
  program.run();
  for (const FileRow& row : rows<FileRow>()) {
    ASSERT_TRUE(row.target);
    EXPECT_TRUE(row.target->is_relative());
    EXPECT_EQ(std::filesystem::file_size(program.target / *row.target), row.targetSize);
    EXPECT_EQ(row.targetModified, row.sourceModified);
    EXPECT_EQ(row.dateFrom, "modified");
    EXPECT_EQ(row.date, "2015-01-01T00:00:00");
  }
}

TEST_F(Record, NamesTheFoldersThatTheRunCreated) {
  std::filesystem::create_directories(program.target / "2015");
  program.run();
  std::vector<Path> created;
  for (const FileRow& row : rows<FileRow>())
    created.insert(created.end(), row.createdFolders.begin(), row.createdFolders.end());
  EXPECT_THAT(created, ElementsAre("2015/01", "2015/01/01-January-2015 Thursday"));
}

TEST_F(Record, CountsWhatIsLeftBehindAndWhatCannotBeRead) {
  writeFile(program.source / "b.HEIC", "1234567");
  files->onOpenFolder = [](const Path& path) -> std::optional<FileError> {
    return path.filename() == "locked" ? std::optional(FileError{EACCES, "on purpose"}) : std::nullopt;
  };
  std::filesystem::create_directories(program.source / "locked");
  program.run();
  const auto left = rows<LeftBehindRow>();
  ASSERT_THAT(left, SizeIs(1));
  EXPECT_EQ(left[0].source, program.source / "b.HEIC");
  EXPECT_EQ(left[0].extension, "heic");
  EXPECT_EQ(left[0].sourceSize, 7U);
  const auto unreadable = rows<UnreadableRow>();
  ASSERT_THAT(unreadable, SizeIs(1));
  EXPECT_EQ(unreadable[0].source, program.source / "locked");
  EXPECT_EQ(unreadable[0].reason, "on purpose");
}

TEST_F(Record, HoldsTheFilesThatAStoppedRunDidNotReach) {
  startAndHoldFirstCopy();
  program.press(controls().buttonStop);
  copying.open();
  program.waitUntilEnded();
  EXPECT_EQ(info().result, "stopped");
  EXPECT_THAT(rows<FileRow>(), SizeIs(5));
  EXPECT_EQ(verdicts()["e.jpg"], Outcome::notReached);
}

TEST_F(Record, IsReadableWhileTheRunGoesOn) {
  startAndHoldFirstCopy();
  EXPECT_EQ(info().result, "");
  EXPECT_TRUE(isBeingWritten(report::rowsFile(folder())));
  copying.open();
  program.waitUntilEnded();
  EXPECT_FALSE(isBeingWritten(report::rowsFile(folder())));
}

TEST_F(Record, IsKeptOfEveryRun) {
  program.run();
  program.press(controls().buttonStart);
  program.waitUntilEnded();
  EXPECT_THAT(report::runIds(program.runs), SizeIs(2));
  EXPECT_EQ(verdicts()["a.jpg"], Outcome::exists);
}

TEST_F(Record, ThatCannotBeKeptStopsNoRun) {
  writeFile(program.runs, "a file in its way");
  program.run();
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_EQ(manager().tPhotoCount, 5);
  EXPECT_EQ(manager().recordFailure(), "Not a directory");
}

TEST_F(Record, IsToldToListenersRowByRow) {
  int told = 0;
  manager().rowListener = [&](const report::Row& row) { told += std::holds_alternative<FileRow>(row); };
  program.run();
  EXPECT_EQ(told, 5);
}

TEST_F(Record, ThatIsNotKeptHasNoRowsOfFilesForThoseWhoDoNotTakeThem) {
  writeFile(program.runs, "a file in its way");
  writeFile(program.source / "b.HEIC", "1234567");
  std::vector<report::Row> told;
  manager().rowListener = [&](const report::Row& row) { told.push_back(row); };
  manager().listensToFileRows = false;
  program.run();
  ASSERT_THAT(told, SizeIs(1));
  EXPECT_TRUE(std::holds_alternative<LeftBehindRow>(told[0]));
}

TEST_F(Record, HoldsTheSumsOfRewrittenPhotos) {
  const auto turned = test::jpegPhoto({.width = 640, .height = 480, .orientation = 6});
  const Path photo = writeFile(program.source / "turned.jpg", ByteView(turned));
  program.run();
  EXPECT_EQ(verdicts()["turned.jpg"], Outcome::rewritten);
  for (const FileRow& row : rows<FileRow>()) {
    if (row.source != photo) continue;
    EXPECT_EQ(row.sourceSha256, report::sha256Of(photo).value());
    EXPECT_EQ(row.targetSha256, report::sha256Of(program.target / *row.target).value());
  }
}

}  // namespace kestrova
