#include "platform/file_manager.h"
#include "support/small_volume.h"
#include "support/temporary_folder.h"
#include "support/without_privileges.h"

#include <cerrno>

#include <gtest/gtest.h>

#ifdef __linux__
#include <sys/mount.h>
#endif

namespace kestrova {

namespace {

namespace fs = std::filesystem;

int checkOf(const Path& folder) {
  const auto usable = systemFileManager()->checkTarget(folder);
  return usable ? 0 : usable.error().code;
}

}  // namespace

TEST(TargetCheck, TakesAFolderThatCanBeWrittenOrCreated) {
  const test::TemporaryFolder root;
  EXPECT_EQ(checkOf(root.path()), 0);
  EXPECT_EQ(checkOf(root / "a/b/c/"), 0);
  EXPECT_FALSE(fs::exists(root / "a"));
  fs::create_symlink(root.path(), root / "link");
  EXPECT_EQ(checkOf(root / "link"), 0);
  EXPECT_EQ(checkOf(root / "link/new"), 0);
  EXPECT_EQ(checkOf("missing"), 0);
  EXPECT_TRUE(fs::is_directory(root / "link"));
}

TEST(TargetCheck, RefusesWhatIsNotAFolderAndWhatIsBelowIt) {
  const test::TemporaryFolder root;
  test::writeFile(root / "file", "x");
  EXPECT_EQ(checkOf(root / "file"), ENOTDIR);
  EXPECT_EQ(checkOf(root / "file/a/b"), ENOTDIR);
  fs::create_symlink("nowhere", root / "link");
  EXPECT_EQ(checkOf(root / "link"), ENOENT);
  EXPECT_EQ(checkOf(root / "link/a"), ENOENT);
}

TEST(TargetCheck, RefusesAFolderThatMayNotBeWritten) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may write everything here";
  const test::TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  fs::create_directory(root / "fixed");
  fs::permissions(root / "fixed", fs::perms::others_exec | fs::perms::others_read);
  const test::WithoutPrivileges ordinary;
  EXPECT_EQ(checkOf(root / "fixed"), EACCES);
  EXPECT_EQ(checkOf(root / "fixed/a/b"), EACCES);
}

#ifdef __linux__

TEST(TargetCheck, RefusesAVolumeThatIsReadOnly) {
  const bool isAllowed = test::withSmallVolume(65536, [](const Path& volume) {
    EXPECT_EQ(checkOf(volume / "a"), 0);
    ASSERT_EQ(::mount("none", volume.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(checkOf(volume), EROFS);
    EXPECT_EQ(checkOf(volume / "a"), EROFS);
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

#endif

}  // namespace kestrova
