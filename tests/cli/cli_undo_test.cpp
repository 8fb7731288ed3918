#include "cli/cli_records.h"
#include "platform/append_file.h"
#include "report/row.h"
#include "report/run_folder.h"
#include "report/run_info.h"
#include "report/timestamps.h"

#include <QJsonArray>

#include <gmock/gmock.h>

// Runs `undo` of the real program on records that the tests write.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using report::FileRow;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CliUndo : public CliRecords {
 protected:
  ProcessResult undo(const Words& more = {"--delete"}) const { return run(Words{"undo"} + more); }

  /// The record of a run that copied one file of that name.
  std::string record(const std::string& name, int second) const {
    const Path source = writeFile(card / name, name);
    const Path target = writeFile(tree / "2014" / name, name);
    const auto attributes = files->attributesOfItem(target).value();
    const FileRow row{.source = source,
                      .verdict = Outcome::copied,
                      .target = Path("2014") / name,
                      .targetSize = attributes.size,
                      .targetModified = report::nanosecondsText(attributes.modified),
                      .createdFolders = {"2014"}};
    const Path run = newRun(second);
    writeFile(report::rowsFile(run), lineOf(row));
    return run.filename();
  }
  Path newRun(int second) const {
    const Path run =
        report::createRunFolder(runs, std::chrono::sys_seconds(std::chrono::seconds(second))).value();
    EXPECT_TRUE(report::writeRunInfo(*files, run,
                                     {.command = "organise", .options = {}, .target = tree, .counts = {}}));
    return run;
  }

  std::shared_ptr<FileManager> files = systemFileManager();
};

}  // namespace

TEST_F(CliUndo, TakesTheLastRunBackThenTheOneBefore) {
  record("1.jpg", 1);
  const std::string last = record("2.jpg", 2);
  const auto result = undo();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "Deleted of the run " + last + ": 1 file\n");
  EXPECT_THAT(filesBelow(tree), ElementsAre("2014/1.jpg"));
  EXPECT_EQ(undo().status, 0);
  EXPECT_FALSE(fs::exists(tree / "2014"));
  EXPECT_THAT(undo().err, HasSubstr("no record of a run that could be taken back"));
  EXPECT_THAT(filesBelow(card), ElementsAre("1.jpg", "2.jpg"));
}

TEST_F(CliUndo, TakesTheNamedRunBack) {
  const std::string first = record("1.jpg", 1);
  record("2.jpg", 2);
  EXPECT_EQ(undo({first, "--delete"}).status, 0);
  EXPECT_THAT(filesBelow(tree), ElementsAre("2014/2.jpg"));
  EXPECT_EQ(undo({"20261121T101502Z"}).status, 2);
  EXPECT_EQ(undo({"../runs"}).status, 2);
}

TEST_F(CliUndo, MovesFilesToTheTrash) {
  record("1.jpg", 1);
  const auto result = undo({});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("Moved to the trash"));
  EXPECT_FALSE(fs::exists(tree / "2014/1.jpg"));
  EXPECT_EQ(readFile(root / "data/Trash/files/1.jpg"), "1.jpg");
}

TEST_F(CliUndo, RefusesToTrashANameThatIsNotUtf8) {
  record("\xFF.jpg", 1);
  const auto refused = undo({});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("2014/\\xff.jpg: its name is not UTF-8"));
  EXPECT_THAT(refused.err, HasSubstr("--delete"));
  EXPECT_EQ(undo().status, 0);
  EXPECT_THAT(filesBelow(tree), IsEmpty());
}

TEST_F(CliUndo, ShowsFirstWhatItWouldDo) {
  const std::string run = record("1.jpg", 1);
  const auto result = undo({"--dry-run"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "Would take back of the run " + run + ": 1 file\n");
  EXPECT_THAT(filesBelow(tree), ElementsAre("2014/1.jpg"));
  EXPECT_THAT(undo().out, HasSubstr("1 file, 1 folder")) << "it was not taken for done";
}

TEST_F(CliUndo, NamesWhatStaysAndWhy) {
  record("1.jpg", 1);
  writeFile(card / "1.jpg", "edited");
  const auto result = undo();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "kestrova-cli: not taken back: " + (tree / "2014/1.jpg").native() +
                            ": its source has different content\n");
  EXPECT_EQ(undo().status, 1) << "it is still the last run that could be taken back";
}

TEST_F(CliUndo, SpeaksJson) {
  const std::string run = record("1.jpg", 1);
  fs::remove(card / "1.jpg");
  const QJsonObject json = jsonIn(undo({"--json", "--delete"}));
  EXPECT_EQ(json[QLatin1String("run")].toString().toStdString(), run);
  EXPECT_EQ(json[QLatin1String("removed")].toInt(-1), 0);
  EXPECT_EQ(json[QLatin1String("refused")][0][QLatin1String("target")].toString().toStdString(),
            tree / "2014/1.jpg");
}

TEST_F(CliUndo, LeavesARunThatIsStillGoingOnAlone) {
  const std::string going = record("1.jpg", 1);
  const Path rows = report::rowsFile(runs / going);
  const std::string lines = readFile(rows);
  fs::remove(rows);
  auto writer = AppendFile::create(rows);
  ASSERT_TRUE(writer && writer->append(lines));
  const auto result = undo();
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr("still going on"));
  EXPECT_TRUE(fs::exists(tree / "2014/1.jpg"));
}

TEST_F(CliUndo, DoesNotTakeAnAbsentDiskForDone) {
  record("1.jpg", 1);
  fs::rename(tree, root / "unplugged");
  EXPECT_THAT(undo().err, HasSubstr("is not there"));
  fs::create_directory(tree);  // a mount point
  EXPECT_THAT(undo().out, HasSubstr("1 already gone"));
  fs::remove(tree);
  fs::rename(root / "unplugged", tree);
  EXPECT_THAT(undo().out, HasSubstr("1 file"));
  EXPECT_THAT(filesBelow(tree), IsEmpty());
}

}  // namespace kestrova::test
