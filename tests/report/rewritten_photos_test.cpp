#include "report/rewritten_photos.h"

#include "report/row.h"
#include "report/run_folder.h"
#include "report/run_info.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using test::writeFile;

struct RewrittenPhotosTest : testing::Test {
  test::TemporaryFolder folder;
  std::shared_ptr<FileManager> files = systemFileManager();
  Path runs = folder / "runs";
  Path tree = folder / "tree";
  Path photo = writeFile(folder / "card/1.jpg", test::jpegPhoto({.width = 80, .height = 60}));
  Path written = writeFile(tree / "2014/1.jpg", test::jpegPhoto({.width = 40, .height = 30}));
  FileRow row{.source = folder / "elsewhere/1.jpg",
              .verdict = Outcome::resized,
              .target = "2014/1.jpg",
              .sourceSha256 = sha256Of(photo).value(),
              .targetSha256 = sha256Of(written).value()};

  void record(const Path& target) {
    const Path run = createRunFolder(runs, std::chrono::sys_seconds(std::chrono::seconds(1))).value();
    ASSERT_TRUE(
        writeRunInfo(*files, run, {.command = "organise", .options = {}, .target = target, .counts = {}}));
    writeFile(rowsFile(run), lineOf(row));
  }
  bool hold(const Path& target) const { return RewrittenPhotos(runs, target, files).hold(photo); }
};

TEST_F(RewrittenPhotosTest, AreFoundByTheContentOfTheirSources) {
  record(tree);
  EXPECT_TRUE(hold(tree));
  writeFile(photo, "another");
  EXPECT_FALSE(hold(tree));
}

TEST_F(RewrittenPhotosTest, CountBelowTheTargetAlone) {
  EXPECT_FALSE(hold(tree));
  record(tree);
  EXPECT_FALSE(hold(folder / "other"));
  EXPECT_TRUE(hold(tree / "2014"));
  EXPECT_TRUE(hold(folder.path()));
}

TEST_F(RewrittenPhotosTest, AreFoundWhereTheTargetIsNamedThroughALink) {
  fs::create_symlink(tree, folder / "link");
  record(folder / "link");
  EXPECT_TRUE(hold(tree));
}

TEST_F(RewrittenPhotosTest, CountAsLongAsTheyAreWhatTheRunWrote) {
  record(tree);
  writeFile(written, test::jpegPhoto({.width = 40, .height = 30, .seed = 1}));
  EXPECT_FALSE(hold(tree));
  fs::remove(written);
  EXPECT_FALSE(hold(tree));
}

TEST_F(RewrittenPhotosTest, CountOnlyIfTheyDecode) {
  writeFile(written, "not a photo");
  row.targetSha256 = sha256Of(written).value();
  record(tree);
  EXPECT_FALSE(hold(tree));
}

TEST_F(RewrittenPhotosTest, AreNoLinks) {
  record(tree);
  fs::rename(written, folder / "moved.jpg");
  fs::create_symlink(folder / "moved.jpg", written);
  EXPECT_FALSE(hold(tree));
}

TEST_F(RewrittenPhotosTest, AreNotThereWithoutSums) {
  row.targetSha256.clear();
  record(tree);
  EXPECT_FALSE(hold(tree));
}

TEST_F(RewrittenPhotosTest, AreNotCopies) {
  row.verdict = Outcome::copied;
  record(tree);
  EXPECT_FALSE(hold(tree));
}

}  // namespace

}  // namespace kestrova::report
