#include "report/rescue.h"

#include "support/failing_file_manager.h"
#include "support/temporary_folder.h"

#include <cerrno>

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using test::readFile;
using test::writeFile;
using testing::ElementsAre;

struct RescueTest : testing::Test {
  test::TemporaryFolder folder;
  std::shared_ptr<FileManager> files = systemFileManager();
  Path card = folder / "media/CARD";
  Path refuge = folder / "refuge";
  RescueRequest request{.sources = {card}, .files = {}, .folder = refuge};
  std::vector<FileRow> rows;

  RescueTest() {
    request.record = [this](const FileRow& row) { rows.push_back(row); };
  }
  RescueResult rescue() const { return rescueFiles(request, *files); }
};

TEST_F(RescueTest, KeepsPathsAndNamesBelowTheSourcesName) {
  request.files = {writeFile(card / "DCIM/100/IMG_1.HEIC", "heic"),
                   writeFile(card / "notes \xFF.txt", "notes")};
  EXPECT_EQ(rescue().copied, 2);
  EXPECT_EQ(readFile(refuge / "CARD/DCIM/100/IMG_1.HEIC"), "heic");
  EXPECT_EQ(readFile(refuge / "CARD/notes \xFF.txt"), "notes");
}

TEST_F(RescueTest, GivesSourcesOfOneNameFoldersOfTheirOwn) {
  request.sources = {folder / "a/DCIM", folder / "b/DCIM/"};
  request.files = {writeFile(folder / "a/DCIM/1.jpg", "a"), writeFile(folder / "b/DCIM/1.jpg", "b")};
  EXPECT_EQ(rescue().copied, 2);
  EXPECT_EQ(readFile(refuge / "DCIM/1.jpg"), "a");
  EXPECT_EQ(readFile(refuge / "DCIM-2/1.jpg"), "b");
}

TEST_F(RescueTest, OverwritesNothing) {
  writeFile(refuge / "CARD/1.jpg", "another");
  request.files = {writeFile(card / "1.jpg", "mine"), writeFile(card / "2.jpg", "two")};
  const RescueResult result = rescue();
  EXPECT_EQ(readFile(refuge / "CARD/1.jpg"), "another");
  EXPECT_EQ(result.copied, 1);
  ASSERT_EQ(result.failed.size(), 1U);
  EXPECT_EQ(result.failed[0].path, card / "1.jpg");
  EXPECT_EQ(result.failed[0].reason, "another file has its name there");
}

TEST_F(RescueTest, MayBeRepeated) {
  request.files = {writeFile(card / "1.jpg", "one")};
  rescue();
  const RescueResult again = rescue();
  EXPECT_EQ(again.copied, 0);
  EXPECT_EQ(again.alreadyThere, 1);
  EXPECT_TRUE(again.failed.empty());
}

TEST_F(RescueTest, IsRecordedAsARunIs) {
  request.files = {writeFile(card / "1.jpg", "one"), card / "missing.jpg"};
  rescue();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].verdict, Outcome::copied);
  EXPECT_EQ(rows[0].target, "CARD/1.jpg");
  EXPECT_EQ(rows[0].targetSize, 3U);
  EXPECT_EQ(rows[0].sourceModified, rows[0].targetModified);
  EXPECT_EQ(rows[1].verdict, Outcome::failed);
  EXPECT_NE(rows[1].reason, "");
}

TEST_F(RescueTest, RecordsTheFoldersThatItCreated) {
  request.files = {writeFile(card / "DCIM/1.jpg", "one"), writeFile(card / "DCIM/2.jpg", "two")};
  rescue();
  EXPECT_THAT(rows[0].createdFolders, ElementsAre("CARD", "CARD/DCIM"));
  EXPECT_THAT(rows[1].createdFolders, testing::IsEmpty());
}

TEST_F(RescueTest, SaysWhenTheDiskDoesNotConfirmTheNames) {
  const auto failing = std::make_shared<test::FailingFileManager>();
  failing->onNamesDurable = [] { return FileError{EIO, "Input/output error"}; };
  files = failing;
  request.files = {writeFile(card / "1.jpg", "one")};
  const RescueResult result = rescue();
  ASSERT_EQ(result.failed.size(), 1U);
  EXPECT_EQ(result.failed[0].path, refuge);
  EXPECT_EQ(result.failed[0].reason, "Input/output error");
}

TEST_F(RescueTest, EndsBetweenTwoFilesWhenItIsStopped) {
  request.files = {writeFile(card / "1.jpg", "one"), writeFile(card / "2.jpg", "two")};
  request.stopped = [this] { return !rows.empty(); };
  const RescueResult result = rescue();
  EXPECT_TRUE(result.wasStopped);
  EXPECT_EQ(result.copied, 1);
  EXPECT_FALSE(std::filesystem::exists(refuge / "CARD/2.jpg"));
}

}  // namespace

}  // namespace kestrova::report
