#include "platform/dry_run_files.h"

#include "platform/folder.h"
#include "support/folder_state.h"
#include "support/temporary_folder.h"
#include "support/without_privileges.h"

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::writeFile;
using testing::IsEmpty;

struct DryRun : testing::Test {
  test::TemporaryFolder root;
  Path source = writeFile(root / "source.jpg", "12345");
  Path target = root / "out/2014/a.jpg";
  std::shared_ptr<DryRunFiles> files = std::make_shared<DryRunFiles>(systemFileManager());
  test::FolderState before;

  void SetUp() override { before = test::stateOf(root.path()); }
  void TearDown() override { EXPECT_THAT(test::changes(before, test::stateOf(root.path())), IsEmpty()); }
  static int codeOf(const FileResult<void>& result) { return result ? 0 : result.error().code; }
};

}  // namespace

TEST_F(DryRun, RemembersFoldersWithoutCreatingThem) {
  EXPECT_EQ(codeOf(files->createDirectory(target.parent_path())), 0);
  EXPECT_TRUE(files->isDirectory(root / "out/2014"));
  EXPECT_TRUE(files->isDirectory(root / "out"));
  EXPECT_FALSE(files->isDirectory(root / "out/2015"));
}

TEST_F(DryRun, RemembersCopiesWithSizeAndTime) {
  ASSERT_TRUE(files->createDirectory(target.parent_path()));
  EXPECT_EQ(codeOf(files->copyItem(source, target)), 0);
  const auto copied = files->attributesOfItem(target).value();
  EXPECT_EQ(copied.size, 5U);
  EXPECT_EQ(copied.modified, files->attributesOfItem(source)->modified);
  EXPECT_TRUE(copied.isRegularFile);
  EXPECT_EQ(files->writtenBytes(), 5U);
}

TEST_F(DryRun, FindsNamesTakenByItselfAndByRealFiles) {
  ASSERT_TRUE(files->createDirectory(target.parent_path()));
  ASSERT_TRUE(files->copyItem(source, target));
  EXPECT_EQ(codeOf(files->copyItem(source, target)), EEXIST);
  EXPECT_EQ(codeOf(files->copyItem(source, source)), EEXIST);
  EXPECT_EQ(files->writtenBytes(), 5U);
}

TEST_F(DryRun, GivesANameOnceOnly) {
  ASSERT_TRUE(files->createDirectory(target.parent_path()));
  const auto first = files->stageCopy(source, target, nullptr).value();
  const auto second = files->stageCopy(source, target, nullptr).value();
  EXPECT_EQ(codeOf(first->commit()), 0);
  EXPECT_EQ(codeOf(second->commit()), EEXIST);
}

TEST_F(DryRun, CountsWhatIsReplacedOnce) {
  ASSERT_TRUE(files->createDirectory(target.parent_path()));
  const Bytes data(100);
  EXPECT_EQ(codeOf(files->writeDataReplacing(data, target)), 0);
  EXPECT_EQ(codeOf(files->writeDataReplacing(ByteView(data).subspan(60), target)), 0);
  EXPECT_EQ(files->attributesOfItem(target)->size, 40U);
  EXPECT_EQ(files->writtenBytes(), 40U);
}

TEST_F(DryRun, MissesWhatIsMissing) {
  EXPECT_EQ(codeOf(files->copyItem(source, target)), ENOENT) << "the folder was not created";
  const auto missing = files->copyItem(root / "missing", root / "b.jpg");
  ASSERT_FALSE(missing);
  EXPECT_EQ(missing.error().kind, FileError::Kind::unreadable);
}

TEST_F(DryRun, FailsWhereAFileIsInTheWay) {
  EXPECT_EQ(codeOf(files->createDirectory(source / "below")), ENOTDIR);
  EXPECT_EQ(codeOf(files->copyItem(source, source / "a.jpg")), ENOTDIR);
}

TEST_F(DryRun, FailsWhereNothingMayBeWritten) {
  std::filesystem::create_directory(root / "locked");
  std::filesystem::permissions(root / "locked",
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  before = test::stateOf(root.path());
  if (!test::canLosePrivileges()) GTEST_SKIP() << "everything may be written here";
  const test::WithoutPrivileges privileges;
  EXPECT_EQ(codeOf(files->createDirectory(root / "locked/2014")), EACCES);
  EXPECT_EQ(codeOf(files->copyItem(source, root / "locked/a.jpg")), EACCES);
}

}  // namespace kestrova
