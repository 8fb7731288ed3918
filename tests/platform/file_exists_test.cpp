#include "platform/file_error.h"
#include "support/failing_file_manager.h"
#include "support/temporary_folder.h"
#include "support/without_privileges.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;

/// Whether a file exists if reading its attributes fails with this error.
FileResult<bool> existsAfter(int error) {
  test::FailingFileManager files;
  files.onAttributes = [&](const Path&) { return systemError(error); };
  return files.fileExists("/anything");
}

}  // namespace

TEST(FileExists, TakesOnlyAMissingNameOrFolderForAbsent) {
  EXPECT_FALSE(existsAfter(ENOENT).value());
  EXPECT_FALSE(existsAfter(ENOTDIR).value());
  for (const int error : {EACCES, EIO, ELOOP, ESTALE, EOVERFLOW, ENAMETOOLONG}) {
    const auto exists = existsAfter(error);
    ASSERT_FALSE(exists) << error;
    EXPECT_EQ(exists.error().code, error);
  }
}

TEST(FileExists, CannotBeSaidBelowAFolderThatMayNotBeSearched) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may search everything here";
  const test::TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  test::writeFile(root / "closed/file", "x");
  fs::permissions(root / "closed", fs::perms::none);
  const test::WithoutPrivileges ordinary;
  EXPECT_FALSE(systemFileManager()->fileExists(root / "closed/file"));
}

TEST(FileExists, IsAnsweredBelowAHeldTargetAsElsewhere) {
  const test::TemporaryFolder root;
  const auto files = systemFileManager();
  const auto held = files->holdTarget(root / "target");
  EXPECT_FALSE(files->fileExists(root / "target/2014/a").value());
  test::writeFile(root / "target/2014/a", "x");
  EXPECT_TRUE(files->fileExists(root / "target/2014/a").value());
  EXPECT_TRUE(files->fileExists(root / "target").value());
  EXPECT_FALSE(files->fileExists(root / "target/2014/b").value());
  EXPECT_FALSE(files->fileExists(root / "target/2014/a/b").value());
  EXPECT_FALSE(files->fileExists(root / "target/2015/a").value());
}

TEST(FileExists, MustBeKnownBeforeAnythingIsCopied) {
  const test::TemporaryFolder root;
  const Path from = test::writeFile(root / "from", "x");
  test::FailingFileManager files;
  files.onAttributes = [&](const Path& path) {
    return path == root / "to" ? std::optional(systemError(EIO)) : std::nullopt;
  };
  files.onStageCopy = [](const Path&, const Path&) {
    ADD_FAILURE();
    return std::nullopt;
  };
  EXPECT_EQ(files.copyItem(from, root / "to").error().code, EIO);
}

}  // namespace kestrova
