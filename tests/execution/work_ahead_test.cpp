#include "execution/work_ahead.h"

#include "platform/sha256.h"
#include "support/failing_file_manager.h"
#include "support/patience.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "support/text_bytes.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::filesBelow;
using test::readFile;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

/// A plan of copies and photos into an empty target.
class WorkAheadTest : public testing::Test {
 protected:
  WorkAheadTest() {
    fs::create_directory(target);
    held = files->holdTarget(target);
    files->onStageCopy = [this](const Path&, const Path&) -> test::FailingFileManager::Failure {
      ++begun;
      return std::nullopt;
    };
    files->onStageData = [this](ByteView, const Path&) -> test::FailingFileManager::Failure {
      ++begun;
      return std::nullopt;
    };
  }
  ~WorkAheadTest() override { work.finish(); }

  PlanEntry entryFor(const std::string& name) {
    const auto attributes = files->attributesOfItem(root / name).value();
    return {.from = root / name,
            .to = target / "2014" / name,
            .planned = {.size = attributes.size, .modified = attributes.modified}};
  }
  void planCopyOf(const std::string& name) {
    writeFile(root / name, "contents of " + name);
    plan->append(entryFor(name));
  }
  void planPhoto(const std::string& name) {
    writeFile(root / name, test::textOf(test::jpegPhoto({.width = 64, .height = 48, .orientation = 6})));
    PlanEntry entry = entryFor(name);
    entry.handler = PlanEntry::Handler::resize;
    entry.orientation = 6;
    plan->append(entry);
  }

  void start(const WorkAhead::Limits& limits = {.threads = 2, .photos = 2, .files = 10, .bytes = 1'000'000}) {
    work.start(
        plan, files, [this](const PlanEntry&) { return RewriteWishes{.upright = upright}; }, limits);
  }
  /// Until so many files have begun to be written.
  void waitUntilBegun(int count) const {
    const auto deadline = std::chrono::steady_clock::now() + test::patience;
    while (begun < count && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  }

  const test::TemporaryFolder root;
  const Path target = root / "target";
  const std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  std::shared_ptr<HeldTarget> held;
  const std::shared_ptr<PlanList> plan = std::make_shared<PlanList>(target);
  std::atomic<bool> upright = true;
  std::atomic<int> begun = 0;
  WorkAhead work;
};

}  // namespace

TEST_F(WorkAheadTest, HandsOutCopiesThatOnlyNeedTheirNames) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) planCopyOf(name);
  start();
  waitUntilBegun(3);
  EXPECT_THAT(filesBelow(target), IsEmpty());
  fs::create_directory(target / "2014");
  for (std::size_t index = 0; index < 3; ++index) {
    const auto prepared = work.take(index);
    ASSERT_TRUE(prepared && prepared->copy);
    ASSERT_TRUE(prepared->copy->commit());
  }
  EXPECT_THAT(filesBelow(target), ElementsAre("2014/a.jpg", "2014/b.jpg", "2014/c.jpg"));
  EXPECT_EQ(readFile(target / "2014/b.jpg"), "contents of b.jpg");
}

TEST_F(WorkAheadTest, HandsOutEachFileOnce) {
  for (const char* name : {"a.jpg", "b.jpg"}) planCopyOf(name);
  start();
  waitUntilBegun(2);
  EXPECT_TRUE(work.take(0));
  EXPECT_FALSE(work.take(0));
  const auto second = work.take(1);
  ASSERT_TRUE(second && second->copy);
}

TEST_F(WorkAheadTest, HandsOutPhotosAsTheyAreRewrittenInTheirTurn) {
  planPhoto("photo.jpg");
  start();
  waitUntilBegun(1);
  const auto ahead = work.take(0);
  ASSERT_TRUE(ahead && ahead->photo);
  const PlanEntry entry = plan->entry(0);
  fs::create_directory(target / "2014");
  const auto inTurn = preparePhoto(
      *files, {.from = entry.from, .to = *entry.to, .size = entry.planned.size, .wishes = ahead->wishes});
  ASSERT_TRUE(inTurn);
  EXPECT_EQ(ahead->photo->targetSha256, inTurn->targetSha256);
  EXPECT_EQ(ahead->photo->sourceSha256, inTurn->sourceSha256);
  EXPECT_EQ(ahead->photo->rewriting.size, inTurn->rewriting.size);
  EXPECT_TRUE(ahead->photo->file.value()->commitReplacing());
  EXPECT_EQ(sha256Of(test::viewOf(readFile(*entry.to))), inTurn->targetSha256);
}

TEST_F(WorkAheadTest, LeavesWhatNeedsADecisionToTheOperation) {
  planCopyOf("a.jpg");
  PlanEntry taken = entryFor("a.jpg");
  taken.planned.isNameTaken = true;
  plan->append(taken);
  PlanEntry changed = entryFor("a.jpg");
  changed.planned.modified = Date{.seconds = 1};
  plan->append(changed);
  PlanEntry large = entryFor("a.jpg");
  large.planned.size = WorkAhead::largestFile + 1;
  plan->append(large);
  writeFile(root / "noise.jpg", "not a photo");
  PlanEntry noise = entryFor("noise.jpg");
  noise.handler = PlanEntry::Handler::resize;
  plan->append(noise);
  PlanEntry nowhere = entryFor("a.jpg");
  nowhere.to.reset();
  plan->append(nowhere);
  start();
  waitUntilBegun(1);
  EXPECT_TRUE(work.take(0));
  for (std::size_t index = 1; index < plan->size(); ++index) EXPECT_FALSE(work.take(index)) << index;
}

TEST_F(WorkAheadTest, LeavesASourceThatHasChangedSinceToTheOperation) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) planCopyOf(name);
  start({.threads = 1, .photos = 1, .files = 10, .bytes = 1'000'000});
  waitUntilBegun(3);  // so the second has been prepared
  EXPECT_TRUE(work.take(0));
  const auto modified = fs::last_write_time(root / "b.jpg");
  writeFile(root / "b.jpg", "CONTENTS of b.jpg");
  fs::last_write_time(root / "b.jpg", modified);
  EXPECT_FALSE(work.take(1));
}

TEST_F(WorkAheadTest, LeavesAPhotoToTheOperationWhenTheUserWantsItOtherwiseByThen) {
  planPhoto("a.jpg");
  planPhoto("b.jpg");
  start();
  waitUntilBegun(2);
  EXPECT_TRUE(work.take(0));
  upright = false;
  EXPECT_FALSE(work.take(1));
}

TEST_F(WorkAheadTest, LeavesAPhotoToTheOperationWhenItFailsToBeWritten) {
  planPhoto("a.jpg");
  files->onStageData = [this](ByteView, const Path&) {
    ++begun;
    return FileError{ENOSPC, "full"};
  };
  start();
  waitUntilBegun(1);
  EXPECT_FALSE(work.take(0));
}

TEST_F(WorkAheadTest, PreparesNoMoreThanThereIsRoomFor) {
  constexpr int room = 3;
  std::atomic<int> taken = 0;
  std::atomic<int> most = 0;
  files->onStageCopy = [&](const Path&, const Path&) -> test::FailingFileManager::Failure {
    ++begun;
    most = std::max(most.load(), begun - taken);
    return std::nullopt;
  };
  constexpr int count = 30;
  for (int i = 0; i < count; ++i) planCopyOf(std::to_string(100 + i));
  start({.threads = 2, .photos = 2, .files = room, .bytes = 1'000'000});
  for (int i = 0; i < count; ++i) {
    waitUntilBegun(i + 1);
    ++taken;
    EXPECT_TRUE(work.take(static_cast<std::size_t>(i)));
  }
  EXPECT_LE(most, room);
}

TEST_F(WorkAheadTest, PreparesAFileThatAloneIsMoreThanThereIsRoomFor) {
  planCopyOf("a.jpg");
  planCopyOf("b.jpg");
  start({.threads = 2, .photos = 2, .files = 10, .bytes = 1});
  waitUntilBegun(1);
  EXPECT_TRUE(work.take(0));
  waitUntilBegun(2);
  EXPECT_TRUE(work.take(1));
}

TEST_F(WorkAheadTest, BeginsNothingWhilePaused) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) planCopyOf(name);
  start({.threads = 1, .photos = 1, .files = 1, .bytes = 1'000'000});
  waitUntilBegun(1);
  work.setPaused(true);
  EXPECT_TRUE(work.take(0));
  EXPECT_FALSE(work.take(1)) << "was not begun";
  EXPECT_EQ(begun, 1);
  work.setPaused(false);
  waitUntilBegun(2);
  EXPECT_TRUE(work.take(2));
}

TEST_F(WorkAheadTest, LeavesNothingInTheEnd) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) planCopyOf(name);
  start();
  waitUntilBegun(3);
  work.finish();
  EXPECT_FALSE(work.take(0));
  EXPECT_THAT(filesBelow(target), IsEmpty());
}

TEST_F(WorkAheadTest, MakesRoomForGood) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) planCopyOf(name);
  start({.threads = 1, .photos = 1, .files = 2, .bytes = 1'000'000});
  waitUntilBegun(2);
  EXPECT_TRUE(work.giveUp());
  EXPECT_FALSE(work.giveUp());
  for (std::size_t index = 0; index < 3; ++index) EXPECT_FALSE(work.take(index));
  EXPECT_EQ(begun, 2);
}

TEST_F(WorkAheadTest, SkipsWhatIsPassedOver) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) planCopyOf(name);
  start({.threads = 1, .photos = 1, .files = 1, .bytes = 1'000'000});
  waitUntilBegun(1);
  work.passOver(2);
  waitUntilBegun(2);
  const auto prepared = work.take(2);
  ASSERT_TRUE(prepared);
  EXPECT_EQ(prepared->source.size, std::string("contents of c.jpg").size());
  EXPECT_EQ(begun, 2);
}

TEST_F(WorkAheadTest, DoesNothingUntilItIsStarted) {
  EXPECT_FALSE(work.take(0));
  EXPECT_FALSE(work.giveUp());
  work.passOver(3);
  work.stop();
}

}  // namespace kestrova
