#include "platform/file_manager.h"
#include "support/file_results.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

#include <cerrno>

#include <gmock/gmock.h>
#include <sys/stat.h>

#ifdef __linux__
#include <sys/syscall.h>
#endif

// Files that are written before it is their turn.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::codeOf;
using test::filesBelow;
using test::readFile;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

const Bytes data{'n', 'e', 'w'};

class StagingAheadTest : public testing::TestWithParam<Staging> {
 protected:
  StagingAheadTest() {
    fs::create_directory(target);
    writeFile(source, "source");
  }

  FileResult<std::unique_ptr<StagedFile>> stage(const Path& to) {
    return files->stageData(data, to, StagingTime::ahead);
  }

  const test::TemporaryFolder root;
  const Path target = root / "target";
  const Path source = root / "source";
  const Path folder = target / "2014/05";
  const Path photo = folder / "photo.jpg";
  const std::shared_ptr<FileManager> files = systemFileManager(GetParam());
  const std::shared_ptr<HeldTarget> held = files->holdTarget(target);
};

INSTANTIATE_TEST_SUITE_P(BothWays, StagingAheadTest,
                         testing::Values(Staging::unseen, Staging::underTemporaryName), [](const auto& way) {
                           return way.param == Staging::unseen ? "Unseen" : "UnderATemporaryName";
                         });

TEST_P(StagingAheadTest, DoesNotNeedTheFolderYet) {
  const auto copy = files->stageCopy(source, photo, nullptr, StagingTime::ahead);
  ASSERT_TRUE(copy);
  EXPECT_FALSE(fs::exists(target / "2014"));
  ASSERT_TRUE(files->createDirectory(folder));
  ASSERT_TRUE((*copy)->commit());
  EXPECT_EQ(readFile(photo), "source");
  EXPECT_THAT(filesBelow(target), ElementsAre("2014/05/photo.jpg"));
}

TEST_P(StagingAheadTest, NeedsTheFolderInTheEnd) {
  const auto staged = stage(photo);
  ASSERT_TRUE(staged);
  EXPECT_EQ(codeOf((*staged)->commit()), ENOENT);
}

TEST_P(StagingAheadTest, ReplacesAFileThatIsThereByThen) {
  const auto staged = stage(photo);
  ASSERT_TRUE(staged);
  fs::create_directories(folder);
  writeFile(photo, "old");
  EXPECT_EQ(codeOf((*staged)->commit()), EEXIST);
  EXPECT_EQ(readFile(photo), "old");
  ASSERT_TRUE((*staged)->commitReplacing());
  EXPECT_EQ(readFile(photo), "new");
  EXPECT_THAT(filesBelow(target), ElementsAre("2014/05/photo.jpg"));
}

TEST_P(StagingAheadTest, LeavesNothingIfNobodyNeedsIt) {
  ASSERT_TRUE(stage(photo));
  EXPECT_THAT(filesBelow(target), IsEmpty());
}

TEST_P(StagingAheadTest, NeedsAHeldTarget) {
  EXPECT_EQ(codeOf(stage(root / "elsewhere/photo.jpg")), ENOTSUP);
}

TEST_P(StagingAheadTest, NeedsATargetThatExists) {
  fs::remove(target);
  const auto again = systemFileManager(GetParam());
  const auto missing = again->holdTarget(target);
  EXPECT_EQ(codeOf(again->stageData(data, photo, StagingTime::ahead)), ENOENT);
}

TEST_P(StagingAheadTest, LeavesFoldersBehindALinkToTheOperation) {
  fs::create_directory(root / "outside");
  fs::create_symlink(root / "outside", target / "2014");
  EXPECT_EQ(codeOf(stage(photo)), ELOOP);
  EXPECT_THAT(filesBelow(root / "outside"), IsEmpty());
}

TEST_P(StagingAheadTest, TakesTheGroupOfTheFolderThatWillHoldItsOwn) {
  fs::create_directories(target / "2014");
  fs::permissions(target / "2014", fs::perms::set_gid, fs::perm_options::add);
  constexpr auto sameOwner = static_cast<uid_t>(-1);
  if (::chown((target / "2014").c_str(), sameOwner, 12) != 0) GTEST_SKIP() << "groups cannot be changed here";
  const auto staged = stage(photo);
  ASSERT_TRUE(staged);
  ASSERT_TRUE(files->createDirectory(folder));
  ASSERT_TRUE((*staged)->commit());
  struct stat status = {};
  ASSERT_EQ(::stat(photo.c_str(), &status), 0);
  EXPECT_EQ(status.st_gid, 12U);
}

#ifdef __linux__

/// How many of three files get their names where these calls fail.
int namesGivenWithout(FileManager& files, const Path& target, const std::vector<int>& calls) {
  int given = 0;
  const auto work = [&] {
    std::vector<std::unique_ptr<StagedFile>> staged;
    for (const char* name : {"a", "b", "c"})
      staged.push_back(files.stageData(data, target / name, StagingTime::ahead).value());
    for (const auto& file : staged) given += file->commit() ? 1 : 0;
  };
  std::vector<test::FailingCall> failing;
  for (const int call : calls) failing.push_back({.number = call, .error = EIO});
  return test::withFailingCalls(failing, work) ? given : -1;
}

TEST_P(StagingAheadTest, MakesGroupsDurableWithOneCall) {
  const int given = namesGivenWithout(*files, target, {SYS_fdatasync});
  if (given <= 0) GTEST_SKIP() << "the volume has no barrier, or calls cannot be made to fail";
  EXPECT_EQ(given, 3);
}

TEST_P(StagingAheadTest, MakesEachFileDurableWhereThatFails) {
  const int given = namesGivenWithout(*files, target, {SYS_syncfs});
  if (given < 0) GTEST_SKIP() << "calls cannot be made to fail";
  EXPECT_EQ(given, 3);
}

TEST_P(StagingAheadTest, GivesNoNameToAFileThatIsNotOnTheDisk) {
  const int given = namesGivenWithout(*files, target, {SYS_syncfs, SYS_fdatasync});
  if (given < 0) GTEST_SKIP() << "calls cannot be made to fail";
  EXPECT_EQ(given, 0);
  EXPECT_THAT(filesBelow(target), IsEmpty());
}

#endif

}  // namespace

}  // namespace kestrova
