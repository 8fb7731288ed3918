#include "app/manager/planner_fixture.h"

#include <map>
#include <mutex>

#include <gmock/gmock.h>

// How often a run asks for what it knows already: each question costs a round trip on a network drive.

namespace kestrova {

namespace {

using Failure = test::FailingFileManager::Failure;

class FileAccess : public test::PlannerTest {
 protected:
  FileAccess() {
    files->onAttributes = countingInto(asked_);
    files->onRead = countingInto(read_);
  }
  /// Over the whole run after the scan.
  int askedFor(const Path& path) { return asked_[path]; }
  int askedForTargets() {
    int count = 0;
    for (const auto& [path, number] : asked_)
      count += path.native().starts_with(program.target.native()) && path.has_extension() ? number : 0;
    return count;
  }
  int readOf(const Path& path) { return read_[path]; }

 private:
  std::function<Failure(const Path&)> countingInto(std::map<Path, int>& counts) {
    return [this, &counts](const Path& path) -> Failure {
      const std::lock_guard lock(mutex_);
      ++counts[path];
      return std::nullopt;
    };
  }

  std::mutex mutex_;
  std::map<Path, int> asked_;
  std::map<Path, int> read_;
};

}  // namespace

TEST_F(FileAccess, AsksOnceForAVideoAndReadsNothingOfItBeforeItIsCopied) {
  const Path video = writeVideo("clip.mov", 500);
  program.run();
  ASSERT_EQ(program.targetFiles().size(), 1U);
  EXPECT_EQ(askedFor(video), 1);
  EXPECT_EQ(askedForTargets(), 1);
  EXPECT_EQ(readOf(video), 0);
}

TEST_F(FileAccess, AsksOnceForAPhotoDatedOrNot) {
  const Path dated = writeJpeg("dated.jpg", {.digitized = "2014:05:21 13:45:02"});
  const Path undated = writeJpeg("undated.jpg", {.seed = 2});
  program.run();
  ASSERT_EQ(program.targetFiles().size(), 2U);
  for (const Path& photo : {dated, undated}) {
    EXPECT_EQ(askedFor(photo), 1);
    EXPECT_EQ(readOf(photo), 1);
  }
  EXPECT_EQ(askedForTargets(), 2);
}

TEST_F(FileAccess, AsksOnceForAPhotoThatIsRewritten) {
  const Path photo = writeJpeg("big.jpg", {.width = 1600, .height = 1200});
  controls().comboResolution->chooseItem(1);
  program.run();
  ASSERT_EQ(manager().tRotatedCount, 1);
  EXPECT_EQ(askedFor(photo), 1);
  EXPECT_EQ(askedForTargets(), 1);
  EXPECT_EQ(readOf(photo), 2);
}

}  // namespace kestrova
