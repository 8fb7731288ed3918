#include "platform/file_manager.h"

#include "support/failing_file_manager.h"
#include "support/temporary_folder.h"
#include "support/without_privileges.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::TemporaryFolder;
using test::writeFile;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr mode_t everyMode[] = {0400, 0444, 0600, 0640, 0755};

struct stat statusOf(const Path& path) {
  struct stat status = {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status;
}

int codeOf(const FileResult<void>& result) { return result ? 0 : result.error().code; }

std::string bytesOf(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 2654435761U >> 13);
  return bytes;
}

ByteView viewOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string textOf(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

std::string attributeOf(const Path& path, const char* name) {
  std::string value(64 * 1024, '\0');
  const ssize_t size = ::getxattr(path.c_str(), name, value.data(), value.size());
  value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return value;
}

Path temporaryName(const Path& folder) { return folder / ".kestrova-0.part"; }

/// Every test of writing runs for both ways in which a file can wait for its name.
class FileManagerWrites : public testing::TestWithParam<Staging> {
 protected:
  const std::shared_ptr<FileManager> files = systemFileManager(GetParam());
  const TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(BothWays, FileManagerWrites,
                         testing::Values(Staging::unseen, Staging::underTemporaryName), [](const auto& way) {
                           return way.param == Staging::unseen ? "Unseen" : "UnderATemporaryName";
                         });

}  // namespace

TEST_P(FileManagerWrites, CopiesEveryByteOfFilesOfAllSizes) {
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 262144U, 262145U, 3000001U}) {
    const Path from = writeFile(folder / "from", bytesOf(size));
    const Path to = folder / std::to_string(size);
    ASSERT_EQ(codeOf(files->copyItem(from, to)), 0);
    EXPECT_EQ(readFile(to), bytesOf(size));
  }
}

TEST_P(FileManagerWrites, CopiesAcrossFileSystems) {
  if (!fs::is_directory("/dev/shm")) GTEST_SKIP() << "no second file system here";
  const Path from = "/dev/shm/kestrova-test-" + std::to_string(::getpid());
  writeFile(from, bytesOf(700001));
  EXPECT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  EXPECT_EQ(readFile(folder / "to"), bytesOf(700001));
  fs::remove(from);
}

TEST_P(FileManagerWrites, CopiesPermissionsAndTimesToTheNanosecond) {
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

TEST_P(FileManagerWrites, DoesNotCopyTheBitsThatLendRights) {
  const Path from = writeFile(folder / "from", "x");
  ASSERT_EQ(::chmod(from.c_str(), 06755), 0);
  ASSERT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  EXPECT_EQ(statusOf(folder / "to").st_mode & 07777, 0755U);
}

TEST_P(FileManagerWrites, CopiesExtendedAttributesEvenOfAReadOnlyFile) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may write everything here";
  fs::permissions(folder.path(), fs::perms::all);
  const Path from = writeFile(folder / "from", "x");
  const std::string value("a\0b", 3);
  if (::setxattr(from.c_str(), "user.empty", "", 0, 0) != 0) GTEST_SKIP() << "no extended attributes here";
  ASSERT_EQ(::setxattr(from.c_str(), "user.note", value.data(), value.size(), 0), 0);
  ASSERT_EQ(::chmod(from.c_str(), 0444), 0);
  {
    const test::WithoutPrivileges ordinary;
    ASSERT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  }
  EXPECT_EQ(attributeOf(folder / "to", "user.note"), value);
  EXPECT_EQ(::getxattr((folder / "to").c_str(), "user.empty", nullptr, 0), 0);
}

TEST_P(FileManagerWrites, CopiesAFileWhoseAttributeTheTargetCannotHold) {
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

TEST_P(FileManagerWrites, LeavesNoTraceOnTheSource) {
  const Path from = writeFile(folder / "from", "x");
  const timespec times[2] = {{1000, 1}, {2000, 2}};  // so old that reading it would renew the time of access
  ASSERT_EQ(::utimensat(AT_FDCWD, from.c_str(), times, 0), 0);
  const struct stat before = statusOf(from);
  ASSERT_EQ(codeOf(files->copyItem(from, folder / "to")), 0);
  ASSERT_TRUE(files->readPrefix(from, 10));
  const struct stat after = statusOf(from);
  EXPECT_EQ(after.st_atim.tv_sec, 1000);
  EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
  EXPECT_EQ(after.st_nlink, 1U);
}

TEST_P(FileManagerWrites, CopiesWhatASymbolicLinkLeadsTo) {
  const Path from = writeFile(folder / "from", "x");
  fs::create_symlink("from", folder / "link");
  ASSERT_EQ(codeOf(files->copyItem(folder / "link", folder / "to")), 0);
  EXPECT_TRUE(S_ISREG(statusOf(folder / "to").st_mode));
}

TEST_P(FileManagerWrites, LeavesAnExistingItemAlone) {
  const Path from = writeFile(folder / "from", "new");
  const Path to = writeFile(folder / "to", "old");
  EXPECT_EQ(codeOf(files->copyItem(from, to)), EEXIST);
  EXPECT_EQ(codeOf(files->writeData(viewOf("new"), to)), EEXIST);
  EXPECT_EQ(readFile(to), "old");
  EXPECT_EQ(codeOf(files->copyItem(from, folder.path())), EEXIST);
  EXPECT_THAT(test::filesBelow(folder.path()), UnorderedElementsAre("from", "to"));
}

TEST_P(FileManagerWrites, TakesADanglingLinkUnderTheNameForAnExistingItem) {
  const Path from = writeFile(folder / "from", "new");
  fs::create_symlink("elsewhere", folder / "to");
  EXPECT_EQ(codeOf(files->copyItem(from, folder / "to")), EEXIST);
  EXPECT_EQ(codeOf(files->writeData(viewOf("new"), folder / "to")), EEXIST);
  EXPECT_FALSE(fs::exists(folder / "elsewhere"));
  EXPECT_THAT(test::filesBelow(folder.path()), UnorderedElementsAre("from"));
}

TEST_P(FileManagerWrites, RefusesANameTakenWhileItWrote) {
  auto staged = files->stageData(viewOf("late"), folder / "to");
  ASSERT_TRUE(staged);
  writeFile(folder / "to", "early");
  EXPECT_EQ(codeOf((*staged)->commit()), EEXIST);
  staged->reset();
  EXPECT_EQ(readFile(folder / "to"), "early");
  EXPECT_THAT(test::filesBelow(folder.path()), UnorderedElementsAre("to"));
}

TEST_P(FileManagerWrites, WritesDataWithThePermissionsOfANewFile) {
  const mode_t before = ::umask(027);
  EXPECT_EQ(codeOf(files->writeData(viewOf("abc"), folder / "to")), 0);
  ::umask(before);
  EXPECT_EQ(readFile(folder / "to"), "abc");
  EXPECT_EQ(statusOf(folder / "to").st_mode & 07777, 0640U);
}

TEST_P(FileManagerWrites, ReplacesAnExistingFile) {
  const Path to = writeFile(folder / "to", "old");
  const int reader = ::open(to.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("new"), to)), 0);
  EXPECT_EQ(readFile(to), "new");
  char seen[3] = {};
  EXPECT_EQ(::read(reader, seen, 3), 3);
  EXPECT_EQ(std::string(seen, 3), "old");  // whoever had it open keeps the old one whole
  ::close(reader);
  EXPECT_THAT(test::filesBelow(folder.path()), UnorderedElementsAre("to"));
}

TEST_P(FileManagerWrites, ReplacesALinkAndNotWhatItLeadsTo) {
  writeFile(folder / "elsewhere", "untouched");
  fs::create_symlink("elsewhere", folder / "to");
  ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("new"), folder / "to")), 0);
  EXPECT_EQ(readFile(folder / "elsewhere"), "untouched");
  EXPECT_EQ(readFile(folder / "to"), "new");
  EXPECT_FALSE(fs::is_symlink(folder / "to"));
}

TEST_P(FileManagerWrites, DoesNotReplaceAFolder) {
  fs::create_directory(folder / "to");
  EXPECT_EQ(codeOf(files->writeDataReplacing(viewOf("new"), folder / "to")), EISDIR);
  EXPECT_THAT(test::filesBelow(folder.path()), IsEmpty());
}

TEST_P(FileManagerWrites, LeavesNothingOfAFileThatIsNotCommitted) {
  ASSERT_TRUE(files->stageData(viewOf("abc"), folder / "to"));
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_P(FileManagerWrites, ReportsAMissingSourceOrFolderInTheSystemsWords) {
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

TEST_P(FileManagerWrites, CopiesNothingThatIsNoRegularFileAndWaitsForNone) {
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
  fs::create_directory(folder / "folder");
  EXPECT_EQ(codeOf(files->copyItem(folder / "fifo", folder / "to")), ENOTSUP);
  EXPECT_EQ(codeOf(files->copyItem("/dev/zero", folder / "to")), ENOTSUP);
  EXPECT_EQ(codeOf(files->copyItem(folder / "folder", folder / "to")), EISDIR);
  EXPECT_FALSE(fs::exists(folder / "to"));
}

TEST_P(FileManagerWrites, RefusesASourceWhoseBytesDoNotAddUpToItsSize) {
  // Says that it is empty, and is not.
  if (!fs::exists("/proc/self/status")) GTEST_SKIP() << "no such source here";
  EXPECT_EQ(codeOf(files->copyItem("/proc/self/status", folder / "to")), EBUSY);
  EXPECT_FALSE(fs::exists(folder / "to"));
}

TEST_P(FileManagerWrites, RefusesAnUnreadableSourceAndAFolderThatIsNotWritable) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may do everything here";
  fs::permissions(folder.path(), fs::perms::all);
  fs::permissions(writeFile(folder / "closed", "x"), fs::perms::none);
  writeFile(folder / "from", "x");
  fs::create_directory(folder / "fixed");
  fs::permissions(folder / "fixed", fs::perms::others_exec | fs::perms::owner_exec);
  const test::WithoutPrivileges ordinary;
  EXPECT_EQ(codeOf(files->copyItem(folder / "closed", folder / "to")), EACCES);
  EXPECT_EQ(codeOf(files->copyItem(folder / "from", folder / "fixed/to")), EACCES);
}

TEST_P(FileManagerWrites, CopiesNamesThatAreNoUtf8HoldNewLinesOrAreAsLongAsNamesGet) {
  for (const std::string& name : {std::string("\xc3\x28"), std::string("new\nline"), std::string(255, 'n')}) {
    const Path from = writeFile(folder / "from" / name, "x");
    fs::create_directories(folder / "to");
    ASSERT_EQ(codeOf(files->copyItem(from, folder / "to" / name)), 0);
    EXPECT_EQ(readFile(folder / "to" / name), "x");
    EXPECT_EQ(codeOf(files->writeDataReplacing(viewOf("y"), folder / "to" / name)), 0);
  }
}

TEST_P(FileManagerWrites, WorksOnPathsLongerThanTheSystemTakesInOneCall) {
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

TEST_P(FileManagerWrites, ClearsAwayWhatAKilledRunLeft) {
  const Path abandoned = writeFile(temporaryName(folder.path()), "half a file");
  for (const mode_t mode : everyMode) {
    ASSERT_EQ(::chmod(abandoned.c_str(), mode), 0);
    ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("whole"), folder / "to")), 0);
    EXPECT_THAT(test::filesBelow(folder.path()), UnorderedElementsAre("to"));
    writeFile(abandoned, "half a file");
  }
}

TEST_P(FileManagerWrites, DoesNotTouchTheBytesOfAFileThatAKilledRunLeftWithTwoNames) {
  writeFile(folder / "done", "whole");
  fs::create_hard_link(folder / "done", temporaryName(folder.path()));
  ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("x"), folder / "to")), 0);
  EXPECT_EQ(readFile(folder / "done"), "whole");
  EXPECT_EQ(statusOf(folder / "done").st_nlink, 1U);
}

TEST_P(FileManagerWrites, LeavesTheTemporaryFileOfALivingOwnerAlone) {
  const Path taken = writeFile(temporaryName(folder.path()), "in work");
  const int owner = ::open(taken.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(owner, LOCK_EX), 0);
  EXPECT_EQ(codeOf(files->writeDataReplacing(viewOf("x"), folder / "to")), 0);
  EXPECT_EQ(readFile(taken), "in work");
  ::close(owner);
}

TEST_P(FileManagerWrites, GivesANameToOneOfManyThreadsOnly) {
  std::vector<std::thread> threads;
  std::vector<int> codes(8);
  for (std::size_t i = 0; i < codes.size(); ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 20; ++round) {
        const auto written =
            files->writeData(viewOf(std::string(i + 1, 'x')), folder / std::to_string(round));
        if (!written && written.error().code != EEXIST) codes[i] = written.error().code;
        const auto replaced = files->writeDataReplacing(viewOf("all the same"), folder / "shared");
        if (!replaced) codes[i] = replaced.error().code;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_THAT(codes, testing::Each(0));
  EXPECT_EQ(readFile(folder / "shared"), "all the same");
  EXPECT_EQ(test::filesBelow(folder.path()).size(), 21U);
}

TEST(FileManager, CreatesAllThatIsMissingOfAFolder) {
  const TemporaryFolder root;
  const auto files = systemFileManager();
  EXPECT_EQ(codeOf(files->createDirectory(root / "a/b/c")), 0);
  EXPECT_EQ(codeOf(files->createDirectory(root / "a/b/c")), 0);
  EXPECT_EQ(codeOf(files->createDirectory(root / "a/./b/../e/")), 0);
  EXPECT_TRUE(fs::is_directory(root / "a/b/c"));
  EXPECT_TRUE(fs::is_directory(root / "a/e"));
}

TEST(FileManager, TakesALinkToAFolderForAFolder) {
  const TemporaryFolder root;
  fs::create_directory(root / "real");
  fs::create_symlink("real", root / "link");
  const auto files = systemFileManager();
  EXPECT_EQ(codeOf(files->createDirectory(root / "link")), 0);
  EXPECT_EQ(codeOf(files->createDirectory(root / "link/below")), 0);
  EXPECT_TRUE(fs::is_directory(root / "real/below"));
}

TEST(FileManager, CreatesNoFolderWhereAFileOrADanglingLinkStands) {
  const TemporaryFolder root;
  writeFile(root / "file", "x");
  fs::create_symlink("nowhere", root / "link");
  const auto files = systemFileManager();
  const auto refused = files->createDirectory(root / "file");
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().message, std::strerror(ENOTDIR));
  EXPECT_EQ(codeOf(files->createDirectory(root / "file/below")), ENOTDIR);
  EXPECT_EQ(codeOf(files->createDirectory(root / "link/below")), ENOENT);
  EXPECT_FALSE(fs::exists(root / "nowhere"));
}

TEST(FileManager, CreatesOneFolderFromManyThreads) {
  const TemporaryFolder root;
  const auto files = systemFileManager();
  std::vector<std::thread> threads;
  std::vector<int> codes(4);
  for (int& code : codes) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) code += codeOf(files->createDirectory(root / std::to_string(i) / "a/b/c"));
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_THAT(codes, testing::Each(0));
}

TEST(FileManager, SaysWhatAnItemIs) {
  const TemporaryFolder root;
  writeFile(root / "file", "123");
  fs::create_symlink("file", root / "link");
  fs::create_symlink("nowhere", root / "dangling");
  const timespec times[2] = {{0, 0}, {1234567890, 123456789}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (root / "file").c_str(), times, 0), 0);
  const auto files = systemFileManager();
  const auto file = files->attributesOfItem(root / "link");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->size, 3U);
  EXPECT_EQ(file->modified, (Date{.seconds = 1234567890, .nanoseconds = 123456789}));
  EXPECT_TRUE(file->isRegularFile && !file->isDirectory);
  EXPECT_TRUE(files->isDirectory(root.path()));
  EXPECT_FALSE(files->isDirectory(root / "file"));
  EXPECT_TRUE(files->fileExists(root / "link").value());
  EXPECT_FALSE(files->fileExists(root / "dangling").value());
  EXPECT_EQ(files->attributesOfItem(root / "dangling").error().code, ENOENT);
}

TEST(FileManager, ReadsAtMostAsMuchAsAskedFor) {
  const TemporaryFolder root;
  const auto files = systemFileManager();
  const Path path = writeFile(root / "file", "12345");
  EXPECT_EQ(textOf(files->readPrefix(path, 3).value()), "123");
  EXPECT_EQ(textOf(files->readPrefix(path, 100).value()), "12345");
  EXPECT_EQ(textOf(files->readPrefix(writeFile(root / "empty", ""), 100).value()), "");
  EXPECT_EQ(textOf(files->readFile(path).value()), "12345");
}

TEST(FileManager, ReadsAFileThatHoldsMoreThanItsSizeSays) {
  const std::string maps = textOf(systemFileManager()->readPrefix("/proc/self/smaps", 20000).value());
  EXPECT_EQ(maps.size(), 20000U);
}

TEST(FileManager, ReadsNothingOfWhatIsNoReadableFile) {
  const TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  ASSERT_EQ(::mkfifo((root / "fifo").c_str(), 0666), 0);
  fs::permissions(writeFile(root / "closed", "x"), fs::perms::none);
  const auto files = systemFileManager();
  const test::WithoutPrivileges ordinary;
  for (const char* name : {"fifo", "missing", "."}) EXPECT_FALSE(files->readPrefix(root / name, 10)) << name;
  EXPECT_FALSE(files->readPrefix("/dev/zero", 10));
  EXPECT_EQ(files->readFile(root / "fifo").error().code, ENOTSUP);
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may read everything here";
  EXPECT_FALSE(files->readPrefix(root / "closed", 10));
  EXPECT_EQ(files->readFile(root / "closed").error().code, EACCES);
}

TEST(FailingFileManager, FailsWhereItsHooksSaySo) {
  const TemporaryFolder root;
  const Path from = writeFile(root / "from", "x");
  test::FailingFileManager files;
  EXPECT_EQ(codeOf(files.copyItem(from, root / "a")), 0);
  files.onCommit = [](const Path&) { return FileError{EIO, "broken"}; };
  EXPECT_EQ(codeOf(files.copyItem(from, root / "b")), EIO);
  EXPECT_EQ(codeOf(files.writeDataReplacing(viewOf("x"), root / "b")), EIO);
  files.onStageCopy = [](const Path&, const Path&) { return FileError{ENOSPC, "full"}; };
  EXPECT_EQ(codeOf(files.copyItem(from, root / "c")), ENOSPC);
  files.onStageCopy = [](const Path&, const Path&) -> std::optional<FileError> {
    throw std::runtime_error("thrown");
  };
  EXPECT_THROW(files.copyItem(from, root / "d"), std::runtime_error);
  EXPECT_THAT(test::filesBelow(root.path()), UnorderedElementsAre("a", "from"));
}

}  // namespace kestrova
