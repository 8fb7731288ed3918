#include "platform/file_manager.h"
#include "support/file_results.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

#include <cerrno>
#include <string>

#include <gmock/gmock.h>

#ifdef __linux__
#include <sys/syscall.h>
#endif

// What is written below a held target stays there, even if folders are swapped for links.

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

/// Every test runs on the system as it is, and as if it had no call that enters a folder without following
/// links.
class HeldTargetTest : public testing::TestWithParam<bool> {
 protected:
  HeldTargetTest() {
    fs::create_directory(target);
    fs::create_directory(outside);
    writeFile(source, "source");
  }

  void check(const std::function<void()>& work) const {
#ifdef __linux__
    if (GetParam()) {
      if (!test::withFailingCalls({{.number = SYS_openat2, .error = ENOSYS}}, work))
        GTEST_SKIP() << "system calls cannot be made to fail here";
      return;
    }
#endif
    work();
  }

  /// A folder of the target becomes a link to the one outside.
  void swapForLink(const Path& folder) const {
    fs::rename(folder, root / "moved");
    fs::create_symlink(outside, folder);
  }

  const test::TemporaryFolder root;
  const Path target = root / "target";
  const Path outside = root / "outside";
  const Path source = root / "source.jpg";
  const Path dated = target / "2014/05/21";
  const Path photo = dated / "photo.jpg";
  const std::shared_ptr<FileManager> files = systemFileManager();
};

INSTANTIATE_TEST_SUITE_P(BothWays, HeldTargetTest, testing::Bool(),
                         [](const auto& way) { return way.param ? "NameByName" : "AtOnce"; });

}  // namespace

TEST_P(HeldTargetTest, GetsFoldersAndFiles) {
  check([&] {
    const auto held = files->holdTarget(target);
    EXPECT_FALSE(files->fileExists(photo).value());
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
    EXPECT_EQ(codeOf(files->copyItem(source, photo)), 0);
    EXPECT_EQ(codeOf(files->copyItem(source, photo)), EEXIST);
    EXPECT_EQ(codeOf(files->writeDataReplacing(data, target / "other.jpg")), 0);
    EXPECT_TRUE(files->fileExists(photo).value());
    EXPECT_TRUE(files->isDirectory(dated));
    EXPECT_EQ(codeOf(files->copyItem(source, target / "missing/photo.jpg")), ENOENT);
  });
  EXPECT_THAT(filesBelow(target), ElementsAre("2014/05/21/photo.jpg", "other.jpg"));
}

TEST_P(HeldTargetTest, MayBeMissingAtFirst) {
  check([&] {
    const auto held = files->holdTarget(root / "a/b/");
    EXPECT_FALSE(files->fileExists(root / "a/b/2014/photo.jpg").value());
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(root / "a/b/2014")), 0);
    EXPECT_EQ(codeOf(files->copyItem(source, root / "a/b/2014/photo.jpg")), 0);
  });
  EXPECT_EQ(readFile(root / "a/b/2014/photo.jpg"), "source");
}

TEST_P(HeldTargetTest, FollowsALinkThatWasMetWhenTheRunWasPlanned) {
  fs::create_symlink(outside, target / "2014");
  check([&] {
    const auto held = files->holdTarget(target);
    EXPECT_FALSE(files->fileExists(photo).value());
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
    EXPECT_EQ(codeOf(files->copyItem(source, photo)), 0);
  });
  EXPECT_THAT(filesBelow(outside), ElementsAre("05/21/photo.jpg"));
}

TEST_P(HeldTargetTest, MayItselfBeALink) {
  fs::create_symlink(outside, root / "link");
  check([&] {
    const auto held = files->holdTarget(root / "link");
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(root / "link/2014")), 0);
    EXPECT_EQ(codeOf(files->copyItem(source, root / "link/2014/photo.jpg")), 0);
  });
  EXPECT_THAT(filesBelow(outside), ElementsAre("2014/photo.jpg"));
}

TEST_P(HeldTargetTest, DoesNotFollowAKnownLinkThatLeadsElsewhereLater) {
  fs::create_directory(root / "planned");
  fs::create_symlink(root / "planned", target / "2014");
  check([&] {
    const auto held = files->holdTarget(target);
    EXPECT_FALSE(files->fileExists(photo).value());
    held->followNoNewLinks();
    fs::remove(target / "2014");
    fs::create_symlink(outside, target / "2014");
    EXPECT_EQ(codeOf(files->createDirectory(dated)), ELOOP);
  });
  EXPECT_TRUE(fs::is_empty(outside));
}

TEST_P(HeldTargetTest, RefusesEverythingBelowALinkThatAppearsLater) {
  check([&] {
    const auto held = files->holdTarget(target);
    EXPECT_FALSE(files->fileExists(photo).value());
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
    writeFile(outside / "21/photo.jpg", "untouched");
    swapForLink(target / "2014/05");
    EXPECT_EQ(codeOf(files->createDirectory(dated)), ELOOP);
    EXPECT_EQ(files->fileExists(photo).error().message, "a symbolic link has appeared in the target folder");
    EXPECT_EQ(codeOf(files->copyItem(source, photo)), ELOOP);
    EXPECT_EQ(codeOf(files->writeData(data, photo)), ELOOP);
    EXPECT_EQ(codeOf(files->writeDataReplacing(data, photo)), ELOOP);
  });
  EXPECT_THAT(filesBelow(outside), ElementsAre("21/photo.jpg"));
  EXPECT_EQ(readFile(outside / "21/photo.jpg"), "untouched");
}

TEST_P(HeldTargetTest, RefusesALinkWhereAFolderWasMissing) {
  check([&] {
    const auto held = files->holdTarget(target);
    EXPECT_FALSE(files->fileExists(photo).value());
    held->followNoNewLinks();
    fs::create_symlink(outside, target / "2014");
    EXPECT_EQ(codeOf(files->createDirectory(dated)), ELOOP);
  });
  EXPECT_TRUE(fs::is_empty(outside));
}

TEST_P(HeldTargetTest, RefusesALinkWhereItWasMissingItself) {
  check([&] {
    const auto held = files->holdTarget(root / "new");
    held->followNoNewLinks();
    fs::create_symlink(outside, root / "new");
    EXPECT_EQ(codeOf(files->createDirectory(root / "new/2014")), ELOOP);
  });
  EXPECT_TRUE(fs::is_empty(outside));
}

TEST_P(HeldTargetTest, StaysTheFolderThatItWasWhenItsPathLeadsElsewhere) {
  check([&] {
    const auto held = files->holdTarget(target);
    held->followNoNewLinks();
    swapForLink(target);
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
    EXPECT_EQ(codeOf(files->copyItem(source, photo)), 0);
  });
  EXPECT_TRUE(fs::is_empty(outside));
  EXPECT_THAT(filesBelow(root / "moved"), ElementsAre("2014/05/21/photo.jpg"));
}

TEST_P(HeldTargetTest, GivesAFileItsNameInTheFolderThatItWasStagedFor) {
  check([&] {
    const auto held = files->holdTarget(target);
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
    auto staged = files->stageData(data, photo);
    ASSERT_TRUE(staged);
    swapForLink(dated);
    EXPECT_EQ(codeOf((*staged)->commitReplacing()), 0);
  });
  EXPECT_TRUE(fs::is_empty(outside));
  EXPECT_THAT(filesBelow(root / "moved"), ElementsAre("photo.jpg"));
}

TEST_P(HeldTargetTest, LetsGoOfTheTargetInTheEnd) {
  check([&] {
    files->holdTarget(target)->followNoNewLinks();
    fs::create_symlink(outside, target / "2014");
    EXPECT_EQ(codeOf(files->createDirectory(dated)), 0);
  });
  EXPECT_TRUE(fs::is_directory(outside / "05/21"));
}

TEST_P(HeldTargetTest, LeavesPathsThatOnlyLookAsIfTheyWereBelowItAlone) {
  fs::create_symlink(outside, root / "link");
  check([&] {
    const auto held = files->holdTarget(target);
    held->followNoNewLinks();
    EXPECT_EQ(codeOf(files->createDirectory(target / "../link/down")), 0);
    EXPECT_EQ(codeOf(files->createDirectory(target / "../outside/up")), 0);
    EXPECT_EQ(codeOf(files->createDirectory(root / "target2/a")), 0);
  });
  EXPECT_TRUE(fs::is_directory(outside / "down"));
  EXPECT_TRUE(fs::is_directory(outside / "up"));
  EXPECT_TRUE(fs::is_directory(root / "target2/a"));
}

}  // namespace kestrova
