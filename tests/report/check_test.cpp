#include "report/check.h"

#include "support/temporary_folder.h"
#include "support/without_privileges.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

MATCHER_P(IsAt, path, "") { return arg.path == path; }
MATCHER_P2(IsProgress, done, total, "") { return arg.done == done && arg.total == total; }

struct CheckTest : testing::Test {
  test::TemporaryFolder folder;
  Path card = folder / "card";
  Path tree = folder / "tree";
  CheckRequest request{.sources = {card}, .target = tree};

  CheckTest() {
    fs::create_directories(card);
    fs::create_directories(tree);
  }
  CheckResult check() const { return checkSources(request); }
};

TEST_F(CheckTest, FindsEachFileWhateverItsNameThere) {
  writeFile(card / "DCIM/IMG_1.JPG", "one");
  writeFile(card / "DCIM/MOV_2.MP4", "other");
  writeFile(tree / "2014/a.jpg", "one");
  writeFile(tree / "b", "other");
  const CheckResult result = check();
  EXPECT_TRUE(result.isSafe());
  EXPECT_EQ(result.files, 2);
  EXPECT_EQ(result.safe, 2);
}

TEST_F(CheckTest, NamesWhatIsMissingThoughItsSizeIsThere) {
  const Path missing = writeFile(card / "IMG_1.JPG", "one");
  writeFile(card / "IMG_2.JPG", "two");
  writeFile(tree / "a.jpg", "two");
  writeFile(tree / "IMG_1.JPG", "0ne");
  const CheckResult result = check();
  EXPECT_FALSE(result.isSafe());
  EXPECT_THAT(result.missing, ElementsAre(IsAt(missing)));
  EXPECT_EQ(result.safe, 1);
}

TEST_F(CheckTest, CountsAllFormatsAndTellsTheRest) {
  for (const char* name : {"a.jpg", "b.JPEG", "c.tif", "d.tiff", "e.png", "f.mov"})
    writeFile(card / name, name);
  for (const char* name : {"g.HEIC", "h.heic", "i.xmp", "j"}) writeFile(card / name, name);
  const CheckResult result = check();
  EXPECT_EQ(result.files, 6);
  EXPECT_EQ(summaryOf(result.leftBehind), "2 HEIC, 1 without extension, 1 XMP");
}

TEST_F(CheckTest, ReportsEachFileThatIsLeftBehind) {
  const Path sidecar = writeFile(card / "DCIM/a.xmp", "sidecar");
  writeFile(card / "DCIM/a.jpg", "photo");
  std::vector<Path> left;
  request.leavesBehind = [&](const Path& file) { left.push_back(file); };
  check();
  EXPECT_THAT(left, ElementsAre(sidecar));
}

TEST_F(CheckTest, TakesNoLinkForACopy) {
  const Path photo = writeFile(card / "IMG_1.JPG", "one");
  const Path elsewhere = writeFile(folder / "elsewhere.jpg", "one");
  fs::create_symlink(photo, tree / "back.jpg");
  fs::create_symlink(elsewhere, tree / "away.jpg");
  fs::create_hard_link(photo, tree / "same.jpg");
  EXPECT_THAT(check().missing, ElementsAre(IsAt(photo)));
}

TEST_F(CheckTest, TakesNothingInsideASourceForACopy) {
  request.sources = {tree / "incoming"};
  const Path one = writeFile(tree / "incoming/1.jpg", "one");
  const Path same = writeFile(tree / "incoming/2.jpg", "one");
  EXPECT_THAT(check().missing, ElementsAre(IsAt(one), IsAt(same)));
  writeFile(tree / "2014/1.jpg", "one");
  EXPECT_TRUE(check().isSafe());
}

TEST_F(CheckTest, AcceptsAPhotoThatARecordProves) {
  const Path photo = writeFile(card / "IMG_1.JPG", "large");
  const Path other = writeFile(card / "IMG_2.JPG", "other");
  request.isRewrittenInTarget = [&](const Path& path) { return path == photo; };
  EXPECT_THAT(check().missing, ElementsAre(IsAt(other)));
}

TEST_F(CheckTest, IsNotSafeWhenAFolderCannotBeRead) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "unreadable folders cannot be made here";
  writeFile(card / "locked/IMG_1.JPG", "one");
  fs::permissions(folder.path(), fs::perms::all);
  fs::permissions(card / "locked", fs::perms::none);
  CheckResult result;
  {
    const test::WithoutPrivileges ordinaryUser;
    result = check();
  }
  fs::permissions(card / "locked", fs::perms::owner_all);
  EXPECT_FALSE(result.isSafe());
  EXPECT_THAT(result.unreadable, ElementsAre(IsAt(card / "locked")));
}

TEST_F(CheckTest, IsNotSafeWhenItWasStopped) {
  writeFile(card / "IMG_1.JPG", "one");
  writeFile(tree / "IMG_1.JPG", "one");
  request.stopped = [] { return true; };
  EXPECT_TRUE(check().wasStopped);
  EXPECT_FALSE(check().isSafe());
}

TEST_F(CheckTest, TellsHowFarItIs) {
  writeFile(card / "IMG_1.JPG", "one");
  writeFile(card / "IMG_2.JPG", "three");
  writeFile(tree / "a.jpg", "one");
  std::vector<WorkProgress> told;
  request.progress = [&](const WorkProgress& progress) { told.push_back(progress); };
  check();
  const Amount none;
  const Amount all{2, 8};
  EXPECT_THAT(told, ElementsAre(IsProgress(Amount{1, 3}, none), IsProgress(Amount{2, 8}, none),
                                IsProgress(Amount{3, 11}, none), IsProgress(Amount{1, 3}, all),
                                IsProgress(Amount{2, 8}, all)));
}

TEST_F(CheckTest, IsSafeWhereThereIsNothing) {
  EXPECT_TRUE(check().isSafe());
  EXPECT_THAT(check().missing, IsEmpty());
}

}  // namespace

}  // namespace kestrova::report
