#include "platform/file_manager_fixture.h"
#include "support/without_privileges.h"

#include <cerrno>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/xattr.h>
#include <unistd.h>

// Copying: what is copied with a file, and what is refused.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using namespace test;
using testing::UnorderedElementsAre;

class FileCopy : public FileManagerTest {};

INSTANTIATE_TEST_SUITE_P(BothWays, FileCopy, bothWays, wayName);

std::string bytesOf(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 2654435761U >> 13);
  return bytes;
}

std::string attributeOf(const Path& path, const char* name) {
  std::string value(64 * 1024, '\0');
  const ssize_t size = ::getxattr(path.c_str(), name, value.data(), value.size());
  value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return value;
}

}  // namespace

TEST_P(FileCopy, CopiesEveryByteOfFilesOfAllSizes) {
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 262144U, 262145U, 3000001U}) {
    const Path from = writeFile(folder / "from", bytesOf(size));
    const Path to = folder / std::to_string(size);
    ASSERT_EQ(codeOf(files->copyItem(from, to)), 0);
    EXPECT_EQ(readFile(to), bytesOf(size));
  }
}

TEST_P(FileCopy, CopiesAcrossFileSystems) {
  if (!fs::is_directory("/dev/shm")) GTEST_SKIP() << "no second file system here";
  const Path from = "/dev/shm/kestrova-test-" + std::to_string(::getpid());
  writeFile(from, bytesOf(700001));
  EXPECT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  EXPECT_EQ(readFile(folder / "to"), bytesOf(700001));
  fs::remove(from);
}

TEST_P(FileCopy, CopiesPermissionsAndTimesToTheNanosecond) {
  const Path from = writeFile(folder / "from", "x");
  for (const mode_t mode : everyMode) {
    ASSERT_EQ(::chmod(from.c_str(), mode), 0);
    const timespec times[2] = {{1111111111, 123456789}, {-5, 987654321}};
    ASSERT_EQ(::utimensat(AT_FDCWD, from.c_str(), times, 0), 0);
    const Path to = folder / std::to_string(mode);
    ASSERT_EQ(codeOf(files->copyItem(from, to)), 0);
    const struct stat copy = statusOf(to);
    EXPECT_EQ(copy.st_mode & 07777, mode);
    EXPECT_EQ(copy.st_mtim.tv_sec, -5);
    EXPECT_EQ(copy.st_mtim.tv_nsec, 987654321);
    EXPECT_EQ(copy.st_atim.tv_nsec, 123456789);
  }
}

TEST_P(FileCopy, DoesNotCopyTheBitsThatLendRights) {
  const Path from = writeFile(folder / "from", "x");
  ASSERT_EQ(::chmod(from.c_str(), 06755), 0);
  ASSERT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  EXPECT_EQ(statusOf(folder / "to").st_mode & 07777, 0755U);
}

TEST_P(FileCopy, CopiesExtendedAttributesEvenOfAReadOnlyFile) {
  if (!canLosePrivileges()) GTEST_SKIP() << "root may write everything here";
  fs::permissions(folder.path(), fs::perms::all);
  const Path from = writeFile(folder / "from", "x");
  const std::string value("a\0b", 3);
  if (::setxattr(from.c_str(), "user.empty", "", 0, 0) != 0) GTEST_SKIP() << "no extended attributes here";
  ASSERT_EQ(::setxattr(from.c_str(), "user.note", value.data(), value.size(), 0), 0);
  ASSERT_EQ(::chmod(from.c_str(), 0444), 0);
  {
    const WithoutPrivileges ordinary;
    ASSERT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  }
  EXPECT_EQ(attributeOf(folder / "to", "user.note"), value);
  EXPECT_EQ(::getxattr((folder / "to").c_str(), "user.empty", nullptr, 0), 0);
}

TEST_P(FileCopy, CopiesAFileWhoseAttributeTheTargetCannotHold) {
  const Path from = "/dev/shm/kestrova-test-" + std::to_string(::getpid());
  writeFile(from, "x");
  const std::string value(60000, 'v');
  const bool isSet = ::setxattr(from.c_str(), "user.large", value.data(), value.size(), 0) == 0;
  const auto copied = files->copyItem(from, folder / "to");
  fs::remove(from);
  if (!isSet) GTEST_SKIP() << "no file system with large attributes here";
  EXPECT_EQ(codeOf(copied), 0);
  EXPECT_EQ(readFile(folder / "to"), "x");
}

TEST_P(FileCopy, LeavesNoTraceOnTheSource) {
  const Path from = writeFile(folder / "from", "x");
  const timespec times[2] = {{1000, 1},
                             {2000, 2}};  // so old that reading the file would update its access time
  ASSERT_EQ(::utimensat(AT_FDCWD, from.c_str(), times, 0), 0);
  const struct stat before = statusOf(from);
  ASSERT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  ASSERT_TRUE(files->readPrefix(from, 10));
  const struct stat after = statusOf(from);
  EXPECT_EQ(after.st_atim.tv_sec, 1000);
  EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
  EXPECT_EQ(after.st_nlink, 1U);
}

TEST_P(FileCopy, CopiesWhatASymbolicLinkLeadsTo) {
  const Path from = writeFile(folder / "from", "x");
  fs::create_symlink("from", folder / "link");
  ASSERT_EQ(codeOf(files->copyItem(folder / "link", folder / "to")), 0);
  EXPECT_TRUE(S_ISREG(statusOf(folder / "to").st_mode));
}

TEST_P(FileCopy, LeavesAnExistingItemAlone) {
  const Path from = writeFile(folder / "from", "new");
  const Path to = writeFile(folder / "to", "old");
  EXPECT_EQ(codeOf(files->copyItem(from, to)), EEXIST);
  EXPECT_EQ(codeOf(files->writeData(viewOf("new"), to)), EEXIST);
  EXPECT_EQ(readFile(to), "old");
  EXPECT_EQ(codeOf(files->copyItem(from, folder.path())), EEXIST);
  EXPECT_THAT(filesBelow(folder.path()), UnorderedElementsAre("from", "to"));
}

TEST_P(FileCopy, TakesADanglingLinkUnderTheNameForAnExistingItem) {
  const Path from = writeFile(folder / "from", "new");
  fs::create_symlink("elsewhere", folder / "to");
  EXPECT_EQ(codeOf(files->copyItem(from, folder / "to")), EEXIST);
  EXPECT_EQ(codeOf(files->writeData(viewOf("new"), folder / "to")), EEXIST);
  EXPECT_FALSE(fs::exists(folder / "elsewhere"));
  EXPECT_THAT(filesBelow(folder.path()), UnorderedElementsAre("from"));
}

TEST_P(FileCopy, ReportsAMissingSourceOrFolderInTheSystemsWords) {
  const auto noSource = files->copyItem(folder / "missing", folder / "to");
  ASSERT_FALSE(noSource);
  EXPECT_EQ(noSource.error().code, ENOENT);
  EXPECT_EQ(noSource.error().message, std::strerror(ENOENT));
  EXPECT_EQ(noSource.error().kind, FileError::Kind::unreadable);
  EXPECT_EQ(files->copyItem(writeFile(folder / "from", "x"), folder / "missing/to").error().kind,
            FileError::Kind::notFound);
  EXPECT_EQ(codeOf(files->writeData(viewOf("x"), folder / "missing/to")), ENOENT);
  EXPECT_EQ(codeOf(files->writeData(viewOf("x"), writeFile(folder / "file", "x") / "to")), ENOTDIR);
  EXPECT_EQ(codeOf(files->writeData(viewOf("x"), folder / std::string(256, 'n'))), ENAMETOOLONG);
}

TEST_P(FileCopy, CopiesNothingThatIsNotARegularFileAndNeverBlocks) {
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
  fs::create_directory(folder / "folder");
  EXPECT_EQ(codeOf(files->copyItem(folder / "fifo", folder / "to")), ENOTSUP);
  EXPECT_EQ(codeOf(files->copyItem("/dev/zero", folder / "to")), ENOTSUP);
  EXPECT_EQ(codeOf(files->copyItem(folder / "folder", folder / "to")), EISDIR);
  EXPECT_FALSE(fs::exists(folder / "to"));
}

TEST_P(FileCopy, RefusesASourceWhoseBytesDoNotAddUpToItsSize) {
  // It says that it is empty, but is not.
  if (!fs::exists("/proc/self/status")) GTEST_SKIP() << "no such source here";
  EXPECT_EQ(codeOf(files->copyItem("/proc/self/status", folder / "to")), EBUSY);
  EXPECT_FALSE(fs::exists(folder / "to"));
}

TEST_P(FileCopy, RefusesAnUnreadableSourceAndAFolderThatIsNotWritable) {
  if (!canLosePrivileges()) GTEST_SKIP() << "root may do everything here";
  fs::permissions(folder.path(), fs::perms::all);
  fs::permissions(writeFile(folder / "closed", "x"), fs::perms::none);
  writeFile(folder / "from", "x");
  fs::create_directory(folder / "fixed");
  fs::permissions(folder / "fixed", fs::perms::others_exec | fs::perms::owner_exec);
  const WithoutPrivileges ordinary;
  EXPECT_EQ(codeOf(files->copyItem(folder / "closed", folder / "to")), EACCES);
  EXPECT_EQ(codeOf(files->copyItem(folder / "from", folder / "fixed/to")), EACCES);
}

TEST_P(FileCopy, CopiesNamesThatAreNotUtf8ContainNewLinesOrAreAsLongAsPossible) {
  for (const std::string& name : {std::string("\xc3\x28"), std::string("new\nline"), std::string(255, 'n')}) {
    const Path from = writeFile(folder / "from" / name, "x");
    fs::create_directories(folder / "to");
    ASSERT_EQ(codeOf(files->copyItem(from, folder / "to" / name)), 0);
    EXPECT_EQ(readFile(folder / "to" / name), "x");
    EXPECT_EQ(codeOf(files->writeDataReplacing(viewOf("y"), folder / "to" / name)), 0);
  }
}

TEST_P(FileCopy, WorksOnPathsLongerThanTheSystemTakesInOneCall) {
  for (const int depth : {15, 16, 17, 40}) {
    std::string deep = folder.path().native();
    for (int i = 0; i < depth; ++i) deep += "//" + std::string(255, static_cast<char>('a' + i % 26));
    ASSERT_EQ(codeOf(files->createDirectory(deep)), 0);
    ASSERT_EQ(codeOf(files->createDirectory(deep + "///")), 0);
    EXPECT_TRUE(files->isDirectory(deep));
    const Path from = deep + "/from";
    ASSERT_EQ(codeOf(files->writeData(viewOf("abc"), from)), 0);
    ASSERT_EQ(codeOf(files->copyItem(from, deep + "/to")), 0);
    EXPECT_EQ(codeOf(files->copyItem(from, deep + "/to")), EEXIST);
    EXPECT_EQ(textOf(files->readFile(deep + "/to").value()), "abc");
    EXPECT_EQ(textOf(files->readPrefix(deep + "/to", 2).value()), "ab");
    EXPECT_EQ(files->attributesOfItem(deep + "/to")->size, 3U);
    EXPECT_FALSE(files->fileExists(deep + "/missing/x").value());
  }
}

}  // namespace kestrova
