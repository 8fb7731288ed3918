#include "platform/target_tree.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

#include <cerrno>

#include <gmock/gmock.h>

#ifdef __linux__
#include <sys/syscall.h>
#endif

// Which folders are synchronised before the end of a run is announced.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

struct DurableNames : testing::Test {
  const test::TemporaryFolder root;
  const Path target = root / "a/b/target";
  TargetTree tree{target};
};

TEST_F(DurableNames, NoteEveryFolderThatAFolderIsCreatedIn) {
  fs::create_directories(target / "2013");
  ASSERT_TRUE(tree.create(target / "2014/05/21"));
  EXPECT_THAT(tree.foldersWithNewNames(), ElementsAre(target, target / "2014", target / "2014/05"));
}

TEST_F(DurableNames, NoteTheFoldersAboveANewTarget) {
  ASSERT_TRUE(tree.create(target / "2014"));
  EXPECT_THAT(tree.foldersWithNewNames(),
              ElementsAre(root.path(), root / "a", root / "a/b", root / "a/b/target"));
}

TEST_F(DurableNames, NoteNothingWhereNothingIsCreated) {
  fs::create_directories(target / "2014");
  ASSERT_TRUE(tree.create(target / "2014"));
  ASSERT_TRUE(tree.enter(target / "2014"));
  EXPECT_THAT(tree.foldersWithNewNames(), IsEmpty());
}

TEST_F(DurableNames, AreMadeDurableOnce) {
  ASSERT_TRUE(tree.create(target / "2014"));
  EXPECT_TRUE(tree.makeNamesDurable());
  EXPECT_THAT(tree.foldersWithNewNames(), IsEmpty());
}

TEST_F(DurableNames, DoNotFailForAFolderThatIsGone) {
  ASSERT_TRUE(tree.create(target / "2014/05"));
  fs::remove_all(target / "2014");
  EXPECT_TRUE(tree.makeNamesDurable());
}

#ifdef __linux__

/// What comes of making names durable on a disk that fails.
int codeOnAFailingDisk(HeldTarget& target) {
  int code = 0;
  const auto work = [&] {
    if (const auto durable = target.makeNamesDurable(); !durable) code = durable.error().code;
  };
  return test::withFailingCalls({{.number = SYS_fsync, .error = EIO}}, work) ? code : EIO;
}

TEST_F(DurableNames, FailWithTheDisk) {
  ASSERT_TRUE(tree.create(target / "2014"));
  EXPECT_EQ(codeOnAFailingDisk(tree), EIO);
}

TEST_F(DurableNames, AreThoseOfFilesToo) {
  fs::create_directories(target);
  const auto files = systemFileManager();
  const auto held = files->holdTarget(target);
  EXPECT_EQ(held->makeNamesDurable().has_value(), true);
  ASSERT_TRUE(files->writeData(Bytes{'n', 'e', 'w'}, target / "photo.jpg"));
  EXPECT_EQ(codeOnAFailingDisk(*held), EIO);
}

TEST_F(DurableNames, AreNotAskedOfADiskThatKnowsNothingOfThem) {
  ASSERT_TRUE(tree.create(target / "2014"));
  const bool isAllowed = test::withFailingCalls({{.number = SYS_fsync, .error = EINVAL}},
                                                [&] { EXPECT_TRUE(tree.makeNamesDurable()); });
  if (!isAllowed) GTEST_SKIP() << "system calls cannot be made to fail here";
}

#endif

TEST(Staging, IsChosenForEachFolder) {
  const test::TemporaryFolder root;
  std::vector<int> asked;
  const auto files = systemFileManager([&](int folder) {
    asked.push_back(folder);
    return Staging::underTemporaryName;
  });
  const auto staged = files->stageData(Bytes{'n', 'e', 'w'}, root / "photo.jpg");
  ASSERT_TRUE(staged);
  EXPECT_EQ(asked.size(), 1U);
  EXPECT_THAT(test::filesBelow(root.path()), ElementsAre(".kestrova-0.part"));
  ASSERT_TRUE((*staged)->commit());
  EXPECT_THAT(test::filesBelow(root.path()), ElementsAre("photo.jpg"));
}

}  // namespace

}  // namespace kestrova
