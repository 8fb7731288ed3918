#include "platform/file_manager.h"

#include "platform/file_manager_fixture.h"
#include "support/failing_file_manager.h"
#include "support/without_privileges.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>

// Folders, attributes and reading; the stand-in that fails.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using namespace test;
using testing::UnorderedElementsAre;

}  // namespace

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

TEST(FileManager, ReadsTheStartOfAFileTogetherWithItsAttributes) {
  const TemporaryFolder root;
  const auto files = systemFileManager();
  const Path path = writeFile(root / "file", "12345");
  fs::create_symlink("file", root / "link");
  for (const Path& file : {path, root / "link"}) {
    const FileStart start = files->readStart(file, 3);
    EXPECT_EQ(textOf(start.bytes.value()), "123");
    EXPECT_EQ(start.attributes.value().size, 5U);
    EXPECT_EQ(start.attributes.value().modified, files->attributesOfItem(path).value().modified);
    EXPECT_TRUE(start.attributes.value().isRegularFile);
  }
}

TEST(FileManager, GivesTheAttributesOfWhatCannotBeRead) {
  const TemporaryFolder root;
  ASSERT_EQ(::mkfifo((root / "fifo").c_str(), 0666), 0);
  const auto files = systemFileManager();
  const FileStart fifo = files->readStart(root / "fifo", 3);
  EXPECT_FALSE(fifo.bytes);
  EXPECT_FALSE(fifo.attributes.value().isRegularFile);
  EXPECT_TRUE(files->readStart(root.path(), 3).attributes.value().isDirectory);
  EXPECT_EQ(files->readStart(root / "missing", 3).attributes.error().code, ENOENT);
  EXPECT_EQ(files->readStart(root / "missing", 3).bytes.error().code, ENOENT);
}

TEST(FileManager, ReadsAFileThatHoldsMoreThanItsSizeSays) {
  const std::string maps = textOf(systemFileManager()->readPrefix("/proc/self/smaps", 20000).value());
  EXPECT_EQ(maps.size(), 20000U);
}

TEST(FileManager, ReadsNothingThatIsNotAReadableFile) {
  const TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  ASSERT_EQ(::mkfifo((root / "fifo").c_str(), 0666), 0);
  fs::permissions(writeFile(root / "closed", "x"), fs::perms::none);
  const auto files = systemFileManager();
  const WithoutPrivileges ordinary;
  for (const char* name : {"fifo", "missing", "."}) EXPECT_FALSE(files->readPrefix(root / name, 10)) << name;
  EXPECT_FALSE(files->readPrefix("/dev/zero", 10));
  EXPECT_EQ(files->readFile(root / "fifo").error().code, ENOTSUP);
  if (!canLosePrivileges()) GTEST_SKIP() << "root may read everything here";
  EXPECT_FALSE(files->readPrefix(root / "closed", 10));
  EXPECT_EQ(files->readFile(root / "closed").error().code, EACCES);
}

TEST(FailingFileManager, FailsWhereItsHooksSaySo) {
  const TemporaryFolder root;
  const Path from = writeFile(root / "from", "x");
  FailingFileManager files;
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
  EXPECT_THAT(filesBelow(root.path()), UnorderedElementsAre("a", "from"));
}

}  // namespace kestrova
