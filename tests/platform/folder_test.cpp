#include "platform/folder.h"

#include "support/temporary_folder.h"
#include "support/without_privileges.h"

#include <cerrno>
#include <map>
#include <string>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;
using test::writeFile;
using testing::Pair;
using testing::UnorderedElementsAre;

bool ignore(const char*, EntryKind) { return true; }

}  // namespace

TEST(Folder, ListsEveryEntryWithItsKind) {
  const TemporaryFolder root;
  writeFile(root / "folder/file", "x");
  writeFile(root / "file", "x");
  fs::create_symlink("folder", root / "link");
  ASSERT_EQ(::mkfifo((root / "fifo").c_str(), 0600), 0);
  std::map<std::string, EntryKind> entries;
  const auto folder = openSystemFolder(root.path(), FinalLink::refused);
  ASSERT_TRUE(folder);
  ASSERT_TRUE((*folder)->list([&](const char* name, EntryKind kind) {
    entries[name] = kind;
    return true;
  }));
  EXPECT_THAT(entries, UnorderedElementsAre(Pair("folder", EntryKind::folder), Pair("file", EntryKind::file),
                                            Pair("link", EntryKind::link), Pair("fifo", EntryKind::other)));
}

TEST(Folder, IsOpenedThroughALinkOnlyWhereThatIsAskedFor) {
  const TemporaryFolder root;
  fs::create_directory(root / "folder");
  fs::create_symlink("folder", root / "link");
  EXPECT_TRUE(openSystemFolder(root / "link", FinalLink::followed));
  EXPECT_FALSE(openSystemFolder(root / "link", FinalLink::refused));
  const auto folder = openSystemFolder(root.path(), FinalLink::refused);
  EXPECT_TRUE((*folder)->openFolder("folder"));
  EXPECT_FALSE((*folder)->openFolder("link"));
}

TEST(Folder, SaysWhenItCouldNotBeReadToItsEnd) {
  // Only root could read this folder's entries.
  const auto folder = openSystemFolder("/proc/1/map_files", FinalLink::refused);
  if (!folder || !test::canLosePrivileges()) GTEST_SKIP() << "no folder here that opens but does not read";
  const test::WithoutPrivileges ordinary;
  const auto listed = (*folder)->list(ignore);
  ASSERT_FALSE(listed);
  EXPECT_EQ(listed.error().code, EACCES);
}

}  // namespace kestrova
