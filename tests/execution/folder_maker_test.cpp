#include "execution/folder_maker.h"

#include "support/failing_file_manager.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FolderMakerTest : testing::Test {
  test::TemporaryFolder root;
  Path target = root / "new/target";
  test::FailingFileManager files;
  FolderMaker maker{target};
};

}  // namespace

TEST_F(FolderMakerTest, RemembersWhatItCreatesBelowTheTarget) {
  ASSERT_TRUE(maker.create(files, target / "2014/05/21"));
  EXPECT_THAT(maker.takeCreated(), ElementsAre("2014", "2014/05", "2014/05/21"));
  EXPECT_TRUE(files.isDirectory(target / "2014/05/21"));
}

TEST_F(FolderMakerTest, RemembersOnlyWhatWasMissing) {
  std::filesystem::create_directories(target / "2014/05");
  ASSERT_TRUE(maker.create(files, target / "2014/05/21"));
  ASSERT_TRUE(maker.create(files, target / "2014/06/01"));
  EXPECT_THAT(maker.takeCreated(), ElementsAre("2014/05/21", "2014/06", "2014/06/01"));
  ASSERT_TRUE(maker.create(files, target / "2014/06/01"));
  EXPECT_THAT(maker.takeCreated(), IsEmpty());
}

TEST_F(FolderMakerTest, CreatesAFolderAgainThatVanished) {
  ASSERT_TRUE(maker.create(files, target / "2014"));
  std::filesystem::remove(target / "2014");
  ASSERT_TRUE(maker.create(files, target / "2014"));
  EXPECT_TRUE(files.isDirectory(target / "2014"));
}

TEST_F(FolderMakerTest, RemembersAFolderThatCouldBeCreatedLaterOnly) {
  files.onCreateDirectory = [](const Path&) { return std::optional(FileError{EACCES, "on purpose"}); };
  EXPECT_FALSE(maker.create(files, target / "2014"));
  EXPECT_THAT(maker.takeCreated(), IsEmpty());
  files.onCreateDirectory = nullptr;
  EXPECT_TRUE(maker.create(files, target / "2014"));
  EXPECT_THAT(maker.takeCreated(), ElementsAre("2014"));
}

}  // namespace kestrova
