#include "platform/file_manager_fixture.h"

#include <cerrno>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

// Writing data to new and existing files, and what is left after a failure.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using namespace test;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FileWriting : public FileManagerTest {};

INSTANTIATE_TEST_SUITE_P(BothWays, FileWriting, bothWays, wayName);

Path temporaryName(const Path& folder) { return folder / ".kestrova-0.part"; }

}  // namespace

TEST_P(FileWriting, RefusesANameTakenWhileItWrote) {
  auto staged = files->stageData(viewOf("late"), folder / "to");
  ASSERT_TRUE(staged);
  writeFile(folder / "to", "early");
  EXPECT_EQ(codeOf((*staged)->commit()), EEXIST);
  staged->reset();
  EXPECT_EQ(readFile(folder / "to"), "early");
  EXPECT_THAT(filesBelow(folder.path()), UnorderedElementsAre("to"));
}

TEST_P(FileWriting, WritesDataWithThePermissionsOfANewFile) {
  const mode_t before = ::umask(027);
  EXPECT_EQ(codeOf(files->writeData(viewOf("abc"), folder / "to")), 0);
  ::umask(before);
  EXPECT_EQ(readFile(folder / "to"), "abc");
  EXPECT_EQ(statusOf(folder / "to").st_mode & 07777, 0640U);
}

TEST_P(FileWriting, ReplacesAnExistingFile) {
  const Path to = writeFile(folder / "to", "old");
  const int reader = ::open(to.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("new"), to)), 0);
  EXPECT_EQ(readFile(to), "new");
  char seen[3] = {};
  EXPECT_EQ(::read(reader, seen, 3), 3);
  EXPECT_EQ(std::string(seen, 3), "old");  // those who had it open keep the whole old one
  ::close(reader);
  EXPECT_THAT(filesBelow(folder.path()), UnorderedElementsAre("to"));
}

TEST_P(FileWriting, ReplacesALinkAndNotWhatItLeadsTo) {
  writeFile(folder / "elsewhere", "untouched");
  fs::create_symlink("elsewhere", folder / "to");
  ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("new"), folder / "to")), 0);
  EXPECT_EQ(readFile(folder / "elsewhere"), "untouched");
  EXPECT_EQ(readFile(folder / "to"), "new");
  EXPECT_FALSE(fs::is_symlink(folder / "to"));
}

TEST_P(FileWriting, DoesNotReplaceAFolder) {
  fs::create_directory(folder / "to");
  EXPECT_EQ(codeOf(files->writeDataReplacing(viewOf("new"), folder / "to")), EISDIR);
  EXPECT_THAT(filesBelow(folder.path()), IsEmpty());
}

TEST_P(FileWriting, LeavesNothingOfAFileThatIsNotCommitted) {
  ASSERT_TRUE(files->stageData(viewOf("abc"), folder / "to"));
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_P(FileWriting, ClearsAwayWhatAKilledRunLeft) {
  const Path abandoned = writeFile(temporaryName(folder.path()), "half a file");
  for (const mode_t mode : everyMode) {
    ASSERT_EQ(::chmod(abandoned.c_str(), mode), 0);
    ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("whole"), folder / "to")), 0);
    EXPECT_THAT(filesBelow(folder.path()), UnorderedElementsAre("to"));
    writeFile(abandoned, "half a file");
  }
}

TEST_P(FileWriting, DoesNotTouchTheBytesOfAFileThatAKilledRunLeftWithTwoNames) {
  writeFile(folder / "done", "whole");
  fs::create_hard_link(folder / "done", temporaryName(folder.path()));
  ASSERT_EQ(codeOf(files->writeDataReplacing(viewOf("x"), folder / "to")), 0);
  EXPECT_EQ(readFile(folder / "done"), "whole");
  EXPECT_EQ(statusOf(folder / "done").st_nlink, 1U);
}

TEST_P(FileWriting, LeavesTheTemporaryFileOfALivingOwnerAlone) {
  const Path taken = writeFile(temporaryName(folder.path()), "in work");
  const int owner = ::open(taken.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(owner, LOCK_EX), 0);
  EXPECT_EQ(codeOf(files->writeDataReplacing(viewOf("x"), folder / "to")), 0);
  EXPECT_EQ(readFile(taken), "in work");
  ::close(owner);
}

TEST_P(FileWriting, GivesANameToOneOfManyThreadsOnly) {
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
  EXPECT_EQ(filesBelow(folder.path()).size(), 21U);
}

}  // namespace kestrova
