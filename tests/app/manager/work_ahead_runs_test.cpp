#include "platform/main_queue.h"
#include "support/failing_file_manager.h"
#include "support/folder_state.h"
#include "support/headless_program.h"
#include "support/random_tree.h"
#include "support/small_volume.h"

#include <cerrno>
#include <functional>
#include <map>
#include <random>
#include <semaphore>
#include <set>

#include <gmock/gmock.h>

// Whatever is prepared ahead, a user sees what he sees if nothing is. The test's number is the seed.

namespace kestrova {

namespace {

/// All that a run shows and leaves behind.
struct Seen {
  QStringList statusTexts;
  QStringList log;
  std::vector<std::string> rows;
  std::vector<std::int64_t> counters;
  std::map<std::string, std::string> files;  ///< below the target, by name
};

std::vector<std::int64_t> countersOf(const OrganiseManager& m) {
  return {m.sTotalCount,    m.sTotalSize,    m.sDuplicateCount, m.tTotalCount,     m.tTotalSize,
          m.tPhotoCount,    m.tVideoCount,   m.tAlreadyCount,   m.tRotatedCount,   m.tRotatedSize,
          m.tFilteredCount, m.tFilteredSize, m.tAlreadySize,    m.targetExistCount};
}

/// Without what depends on the time of the run.
std::string asShown(report::Row row) {
  if (auto* file = std::get_if<report::FileRow>(&row)) {
    if (file->verdict != Outcome::copied) file->targetModified.clear();
  }
  return report::lineOf(row);
}

class WorkAheadRuns : public testing::TestWithParam<unsigned> {
 protected:
  WorkAheadRuns() {
    for (const auto& file : test::writeRandomTree(in, GetParam())) {
      if (random_() % 8 == 0) failing_.insert(file.path);
    }
  }

  /// Things happen at the same verdicts in each run.
  void at(std::size_t verdict, std::function<void(MainInterface&)> event) {
    events_[verdict] = std::move(event);
  }

  Seen run(std::optional<std::size_t> jobs) {
    std::filesystem::remove_all(out);
    const auto staging = GetParam() % 2 == 0 ? Staging::unseen : Staging::underTemporaryName;
    const auto files = std::make_shared<test::FailingFileManager>(systemFileManager(staging));
    files->onStageCopy = [this](const Path& from, const Path&) { return failureOf(from); };
    files->onRead = [this](const Path& path) { return failsToBeRead_ ? failureOf(path) : std::nullopt; };
    test::HeadlessProgram program{files, volatileUserDefaults(), jobs};
    program.clock = [] { return Date{.seconds = 1'700'000'000}; };
    chooseOptions(*program.interface);
    Seen seen;
    auto& manager = program.manager();
    manager.rowListener = [&](const report::Row& row) { seen.rows.push_back(asShown(row)); };
    manager.verdictListener = [&, count = std::size_t{0}](const Verdict&) mutable {
      if (const auto event = events_.find(++count); event != events_.end())
        onMainThread([&] { event->second(*program.interface); });
    };
    manager.addSource(in);
    manager.setTarget(out);
    program.press(program.interface->buttonStart);
    program.waitUntilEnded();
    seen.statusTexts = program.statusTexts();
    seen.log = program.log.lines().replaceInStrings(QString::fromStdString(out.native()), QString());
    seen.counters = countersOf(manager);
    for (const auto& [name, state] : test::stateOf(out)) seen.files[name] = state.contents;
    return seen;
  }

  void expectTheSame() { expectTheSame(run(1), run(4)); }

  static void expectTheSame(const Seen& one, const Seen& many) {
    EXPECT_EQ(many.rows, one.rows);
    EXPECT_EQ(many.counters, one.counters);
    EXPECT_EQ(many.files, one.files);
    EXPECT_EQ(many.log, one.log);
    EXPECT_EQ(many.statusTexts.back(), one.statusTexts.back());
    EXPECT_GT(one.rows.size(), 5U);
  }

  std::mt19937 random_{GetParam()};
  test::TemporaryFolder root;
  const Path in = root / "in";
  Path out = root / "out";
  bool failsToBeRead_ = false;

 private:
  /// The worker goes on when it has happened.
  static void onMainThread(const std::function<void()>& event) {
    std::binary_semaphore done(0);
    postToMainQueue([&] {
      event();
      done.release();
    });
    done.acquire();
  }

  void chooseOptions(MainInterface& controls) const {
    std::mt19937 random(GetParam());
    controls.comboCopy->chooseItem(0);
    controls.comboPhotoFormats->chooseItem(static_cast<int>(random() % 3));
    controls.comboFolderFormat->chooseItem(static_cast<int>(random() % 3));
    controls.comboResolution->chooseItem(static_cast<int>(random() % 3));
    controls.chkRotate->setState(random() % 2);
    controls.chkFilterSmallPhotos->setState(random() % 3 == 0);
  }

  std::optional<FileError> failureOf(const Path& path) const {
    return failing_.contains(path) ? std::optional(FileError{EACCES, "on purpose"}) : std::nullopt;
  }

  std::set<Path> failing_;
  std::map<std::size_t, std::function<void(MainInterface&)>> events_;
};

}  // namespace

TEST_P(WorkAheadRuns, ShowWhatOtherRunsShow) { expectTheSame(); }

TEST_P(WorkAheadRuns, ShowItAlsoWherePhotosCannotBeRead) {
  failsToBeRead_ = true;
  expectTheSame();
}

TEST_P(WorkAheadRuns, DoWhatTheOptionsSayAtThatMoment) {
  at(3 + random_() % 10, [](MainInterface& controls) {
    controls.chkRotate->setState(controls.chkRotate->state() == CheckBox::off);
  });
  at(15 + random_() % 10, [](MainInterface& controls) {
    controls.chkFilterSmallPhotos->setState(controls.chkFilterSmallPhotos->state() == CheckBox::off);
  });
  expectTheSame();
}

TEST_P(WorkAheadRuns, PauseAndContinue) {
  for (int i = 0; i < 3; ++i) {
    at(1 + random_() % 30, [](MainInterface& controls) {
      controls.manager.startProcess();
      controls.manager.startProcess();
    });
  }
  expectTheSame();
}

TEST_P(WorkAheadRuns, StopAndLeaveNothing) {
  at(1 + random_() % 30, [](MainInterface& controls) { controls.manager.stopProcess(); });
  expectTheSame();
}

TEST_P(WorkAheadRuns, EndWithTheSameFileOnAFullVolume) {
  const std::size_t size = std::size_t{200'000} + random_() % 800'000;
  Seen one;
  Seen many;
  const auto runOn = [&](const Path& volume, std::size_t jobs) {
    out = volume / "out";
    return run(jobs);
  };
  const bool isAllowed = test::withSmallVolume(size, [&](const Path& volume) { one = runOn(volume, 1); }) &&
                         test::withSmallVolume(size, [&](const Path& volume) { many = runOn(volume, 4); });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
  expectTheSame(one, many);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkAheadRuns, testing::Range(0U, 8U));

}  // namespace kestrova
