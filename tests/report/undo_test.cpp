#include "report/undo.h"

#include "report/row.h"
#include "report/timestamps.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;

struct UndoTest : testing::Test {
  test::TemporaryFolder folder;
  std::shared_ptr<FileManager> files = systemFileManager();
  Path card = folder / "card";
  Path tree = folder / "tree";
  std::vector<FileRow> rows;
  std::vector<Path> discarded;
  UndoRequest request{
      .rows = folder / "rows", .target = tree, .discard = [this](const Path& file) -> FileResult<void> {
        discarded.push_back(file);
        fs::remove(file);
        return {};
      }};

  std::string modified(const Path& file) const {
    return nanosecondsText(files->attributesOfItem(file)->modified);
  }

  /// A row as a run leaves it, with its source and its target.
  FileRow& copied(const std::string& name, const std::string& contents = "photo") {
    const Path source = writeFile(card / name, contents);
    const Path target = writeFile(tree / "2014" / name, contents);
    rows.push_back({.source = source,
                    .verdict = Outcome::copied,
                    .target = "2014/" + name,
                    .sourceSize = contents.size(),
                    .targetSize = contents.size(),
                    .targetModified = modified(target)});
    return rows.back();
  }
  FileRow& rewritten(const std::string& name) {
    FileRow& row = copied(name, "large");
    writeFile(tree / *row.target, "sma");
    row.verdict = Outcome::resized;
    row.targetSize = 3;
    row.targetModified = modified(tree / *row.target);
    row.sourceSha256 = sha256Of(row.source).value();
    row.targetSha256 = sha256Of(tree / *row.target).value();
    return row;
  }
  UndoResult undo() {
    std::string lines;
    for (const FileRow& row : rows) lines += lineOf(row);
    writeFile(request.rows, lines);
    return undoRun(request, *files).value();
  }
  void expectRefused(const std::string& reason) {
    const UndoResult result = undo();
    EXPECT_EQ(result.removed, 0);
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_EQ(result.refused[0].path, tree / *rows[0].target);
    EXPECT_THAT(result.refused[0].reason, testing::HasSubstr(reason));
    EXPECT_TRUE(discarded.empty());
  }
};

TEST_F(UndoTest, TakesAwayWhatTheRunWrote) {
  copied("1.jpg");
  rewritten("2.jpg");
  EXPECT_EQ(undo().removed, 2);
  EXPECT_TRUE(test::filesBelow(tree).empty());
  EXPECT_EQ(test::filesBelow(card).size(), 2U);
}

TEST_F(UndoTest, LeavesWhatTheRunOnlyMet) {
  copied("1.jpg").verdict = Outcome::exists;
  EXPECT_EQ(undo().removed, 0);
  EXPECT_TRUE(fs::exists(tree / "2014/1.jpg"));
}

TEST_F(UndoTest, RefusesATargetOfAnotherSizeOrTime) {
  copied("1.jpg");
  rows[0].targetSize = 4;
  expectRefused("size");
  rows[0].targetSize = 5;
  rows[0].targetModified = "1";
  expectRefused("changed after the run");
}

TEST_F(UndoTest, RefusesAChangedTargetThatKeptSizeAndTime) {
  rewritten("1.jpg");
  const auto time = fs::last_write_time(tree / "2014/1.jpg");
  writeFile(tree / "2014/1.jpg", "SMA");
  fs::last_write_time(tree / "2014/1.jpg", time);
  expectRefused("different content");
}

TEST_F(UndoTest, RefusesWhenTheSourceIsGone) {
  fs::remove(copied("1.jpg").source);
  expectRefused("source cannot be read");
}

TEST_F(UndoTest, RefusesWhenTheSourceHasChanged) {
  writeFile(copied("1.jpg").source, "PHOTO");
  expectRefused("source has different content");
  rows.clear();
  writeFile(rewritten("2.jpg").source, "LARGE");
  expectRefused("source has changed");
}

TEST_F(UndoTest, RefusesARewrittenPhotoWithoutSums) {
  rewritten("1.jpg").targetSha256.clear();
  expectRefused("no checksum");
}

TEST_F(UndoTest, RefusesALinkInTheTargetsPlace) {
  const FileRow& row = copied("1.jpg");
  fs::rename(tree / "2014/1.jpg", folder / "moved.jpg");
  fs::create_symlink(folder / "moved.jpg", tree / *row.target);
  expectRefused("not a regular file");
}

TEST_F(UndoTest, RefusesATargetThatIsItsSource) {
  const FileRow& row = copied("1.jpg");
  fs::remove(row.source);
  fs::create_hard_link(tree / *row.target, row.source);
  expectRefused("the same file as its source");
}

TEST_F(UndoTest, NeverLeavesTheTargetFolder) {
  const Path outside = writeFile(folder / "outside.jpg", "photo");
  FileRow& row = copied("1.jpg");
  row.target = "../outside.jpg";
  row.targetModified = modified(outside);
  expectRefused("outside");
  row.target = outside;
  EXPECT_EQ(undo().removed, 0);
  EXPECT_TRUE(fs::exists(outside));
}

TEST_F(UndoTest, MayBeRepeated) {
  copied("1.jpg");
  undo();
  const UndoResult again = undo();
  EXPECT_EQ(again.removed, 0);
  EXPECT_EQ(again.alreadyGone, 1);
  EXPECT_TRUE(again.refused.empty());
}

TEST_F(UndoTest, TrustsTheLastOfSeveralRowsOfOneTarget) {
  FileRow first = rewritten("1.jpg");
  first.source = card / "overwritten.jpg";
  first.targetSha256 = "other";
  rows.insert(rows.begin(), first);
  const UndoResult result = undo();
  EXPECT_EQ(result.removed, 1);
  EXPECT_TRUE(result.refused.empty());
}

TEST_F(UndoTest, ShowsWhatItWouldDoInADryRun) {
  copied("1.jpg").createdFolders = {"2014"};
  request.isDryRun = true;
  EXPECT_EQ(undo().removed, 1);
  EXPECT_TRUE(discarded.empty());
  EXPECT_TRUE(fs::exists(tree / "2014/1.jpg"));
}

TEST_F(UndoTest, TakesAwayTheEmptyFoldersThatTheRunMade) {
  copied("1.jpg").createdFolders = {"2014", "2014/05", "2013"};
  fs::create_directories(tree / "2014/05");
  fs::create_directories(tree / "2012");
  writeFile(tree / "2013/mine.txt", "mine");
  EXPECT_EQ(undo().folders, 2);
  EXPECT_FALSE(fs::exists(tree / "2014"));
  EXPECT_TRUE(fs::exists(tree / "2013/mine.txt"));
  EXPECT_TRUE(fs::exists(tree / "2012"));
}

TEST_F(UndoTest, SaysWhyAFileCannotBeDiscarded) {
  copied("1.jpg");
  request.discard = [](const Path&) -> FileResult<void> {
    return tl::make_unexpected(FileError{0, "no trash"});
  };
  const UndoResult result = undo();
  ASSERT_EQ(result.refused.size(), 1U);
  EXPECT_EQ(result.refused[0].reason, "no trash");
}

TEST_F(UndoTest, EndsBetweenTwoFilesWhenItIsStopped) {
  copied("1.jpg");
  copied("2.jpg");
  request.stopped = [this] { return !discarded.empty(); };
  const UndoResult result = undo();
  EXPECT_TRUE(result.wasStopped);
  EXPECT_EQ(result.removed, 1);
  EXPECT_TRUE(result.refused.empty());
}

}  // namespace

}  // namespace kestrova::report
