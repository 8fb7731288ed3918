#include "app/manager/planner_fixture.h"

#include <algorithm>
#include <mutex>

#include <gmock/gmock.h>

// A run never replaces or reaches anything that it must not, even if something fails or is swapped on the
// way.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

class TargetSafety : public test::PlannerTest {
 protected:
  TargetSafety() {
    manager().verdictListener = [this](const Verdict& verdict) {
      const std::lock_guard lock(mutex_);
      if (verdict.outcome == Outcome::failed) failures_.push_back(verdict);
    };
  }

  /// The system's words for each file that failed.
  std::vector<std::string> reasons() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> all;
    for (const auto& verdict : failures_) all.push_back(verdict.error);
    return all;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<Verdict> failures_;
};

}  // namespace

TEST_F(TargetSafety, DoesNotReplaceATargetThatCannotBeAskedFor) {
  const Path photo = writeJpeg("a.jpg", {.digitized = "2014:05:21 13:45:02"});
  controls().comboResolution->chooseItem(1);
  const Path target =
      writeFile(program.target / test::nameOf(photo, "2014/05/21/PHOTO_20140521134502_", ".JPG"), "mine");
  files->onAttributes = [&, isFirst = true](const Path& path) mutable -> std::optional<FileError> {
    if (path != target || !std::exchange(isFirst, false)) return std::nullopt;
    return FileError{EIO, "no answer"};
  };
  program.run();
  EXPECT_EQ(readFile(target), "mine");
  EXPECT_THAT(reasons(), ElementsAre("no answer"));
}

TEST_F(TargetSafety, StaysInTheTargetWhenADatedFolderBecomesALink) {
  for (const char* name : {"a.mov", "b.mov"}) writeVideo(name, name[0] == 'a' ? 500 : 600);
  const Path outside = program.folder / "outside";
  fs::create_directory(outside);
  files->onStageCopy = [&, isFirst = true](const Path&, const Path& to) mutable {
    if (!std::exchange(isFirst, false)) return test::FailingFileManager::Failure();
    fs::rename(to.parent_path(), program.folder / "moved");
    fs::create_symlink(outside, to.parent_path());
    return test::FailingFileManager::Failure();
  };
  program.run();
  EXPECT_TRUE(fs::is_empty(outside));
  EXPECT_THAT(reasons(), testing::SizeIs(2));
  EXPECT_THAT(reasons(), testing::Each("a symbolic link has appeared in the target folder"));
}

TEST_F(TargetSafety, FollowsALinkThatTheUserPutIntoTheTarget) {
  const Path elsewhere = program.folder / "elsewhere";
  fs::create_directory(elsewhere);
  fs::create_symlink(elsewhere, program.target / "2015");
  writeVideo("clip.mov", 500);
  program.run();
  EXPECT_THAT(test::filesBelow(elsewhere), ElementsAre("01/01/VIDEO_20150101000000_500.MOV"));
  EXPECT_THAT(reasons(), IsEmpty());
}

TEST_F(TargetSafety, LetsGoOfTheTargetWhenTheRunHasEnded) {
  writeVideo("clip.mov", 500);
  program.run();
  fs::create_symlink(program.folder / "source", program.target / "link");
  EXPECT_TRUE(files->createDirectory(program.target / "link/new"));
}

}  // namespace kestrova
