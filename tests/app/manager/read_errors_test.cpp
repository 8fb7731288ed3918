#include "support/failing_file_manager.h"
#include "support/headless_program.h"
#include "support/sample_media.h"

#include <map>
#include <mutex>
#include <set>

#include <gmock/gmock.h>

// A run over a small tree in which one call that reads fails, or all from one on: for each such call.

namespace kestrova {

namespace {

using Failure = test::FailingFileManager::Failure;
using Hook = std::function<Failure(const Path&)>;

constexpr const char* reason = "no answer";

struct Calls {
  const char* name;
  Hook test::FailingFileManager::*hook;
};

const Calls allCalls[] = {
    {"reads of files", &test::FailingFileManager::onRead},
    {"attributes", &test::FailingFileManager::onAttributes},
    {"attributes of entries", &test::FailingFileManager::onEntryAttributes},
    {"opened folders", &test::FailingFileManager::onOpenFolder},
    {"listed folders", &test::FailingFileManager::onListed},
};

enum class Fails { once, fromThenOn };

/// One run, with what it told.
class ObservedRun {
 public:
  ObservedRun() {
    writeTree();
    program_.interface->comboResolution->chooseItem(1);
    manager().verdictListener = [this](const Verdict& verdict) {
      const std::lock_guard lock(mutex_);
      ++verdicts_[verdict.source];
      amounts_[verdict.counted()] += 1;
      if (verdict.error == reason) isNamed_ = true;
    };
    manager().unreadableListener = [this](const Path& path, const FileError& error) {
      const std::lock_guard lock(mutex_);
      if (error.message == reason) isNamed_ = true;
      unreadFolders_.push_back(path.native());
    };
  }

  /// Returns how many calls there were.
  int runFailing(Hook test::FailingFileManager::*hook, int number, Fails fails) {
    int calls = 0;
    (*files_).*hook = [&calls, number, fails](const Path&) -> Failure {
      const int call = ++calls;
      const bool isToFail = fails == Fails::once ? call == number : call >= number;
      return isToFail ? Failure({EIO, reason}) : std::nullopt;
    };
    program_.run();
    return calls;
  }

  void expectWellEnded() {
    EXPECT_EQ(manager().runState().phase, RunPhase::ended);
    EXPECT_FALSE(manager().runState().isHalted);
    EXPECT_EQ(program_.interface->buttonStop->isEnabled(),
              manager().fileList.empty());  // as after a scan that finds nothing
  }
  void expectOneVerdictOnEachFile() {
    for (const auto& name : test::filesBelow(program_.source)) {
      const Path file = program_.source / name;
      const bool hasOne = verdicts_.contains(file) && verdicts_.at(file) == 1;
      EXPECT_TRUE(hasOne || isBelowUnreadFolder(file)) << file;
    }
  }
  void expectCountersToAddUp() {
    const auto of = [this](Outcome outcome) { return amounts_[outcome]; };
    EXPECT_EQ(manager().sDuplicateCount, of(Outcome::duplicate));
    EXPECT_EQ(manager().tPhotoCount + manager().tVideoCount, of(Outcome::copied));
    EXPECT_EQ(manager().tRotatedCount, of(Outcome::rewritten) + of(Outcome::resized));
    EXPECT_EQ(manager().sTotalCount, of(Outcome::copied) + of(Outcome::rewritten) + of(Outcome::resized) +
                                         of(Outcome::failed) + of(Outcome::unreadable) +
                                         of(Outcome::notReached) + of(Outcome::exists) +
                                         of(Outcome::nameTaken));
  }
  std::size_t written() const { return program_.targetFiles().size(); }
  bool isNamed() const { return isNamed_; }

 private:
  void writeTree() {
    const auto writeVideo = [this](const char* name, char seed) {
      const char* const date = seed == 'a' ? "2015:01:01 00:00:00" : "2015:01:02 00:00:00";
      test::setModified(test::writePhoto(program_.source / name, 500, seed), date);
    };
    writeVideo("a.mov", 'a');
    writeVideo("copy of a.mov", 'a');
    writeVideo("sub/c.mov", 'c');
    writeVideo("sub/copy of c.mov", 'c');
    test::writeFile(program_.source / "d.jpg",
                    ByteView(test::jpegPhoto({.seed = 1, .digitized = "2014:05:21 13:45:02"})));
    test::writeFile(program_.source / "sub/deep/e.jpg",
                    ByteView(test::jpegPhoto({.width = 1600, .height = 1200, .seed = 2, .orientation = 6})));
  }
  bool isBelowUnreadFolder(const Path& file) const {
    return std::any_of(unreadFolders_.begin(), unreadFolders_.end(), [&](const std::string& folder) {
      return file.native().starts_with(folder) && !verdicts_.contains(file);
    });
  }
  OrganiseManager& manager() { return program_.manager(); }

  std::shared_ptr<test::FailingFileManager> files_ = std::make_shared<test::FailingFileManager>();
  test::HeadlessProgram program_{files_};
  std::mutex mutex_;
  std::map<Path, int> verdicts_;
  std::map<Outcome, std::int64_t> amounts_;
  std::vector<std::string> unreadFolders_;
  bool isNamed_ = false;
};

class ReadErrors : public testing::TestWithParam<Calls> {};

INSTANTIATE_TEST_SUITE_P(All, ReadErrors, testing::ValuesIn(allCalls), [](const auto& calls) {
  std::string name(calls.param.name);
  std::erase(name, ' ');
  return name;
});

}  // namespace

TEST_P(ReadErrors, EndNoRunAndAreNamed) {
  const auto hook = GetParam().hook;
  ObservedRun undisturbed;
  const int calls = undisturbed.runFailing(hook, 0, Fails::once);
  ASSERT_GT(calls, 0);
  ASSERT_EQ(undisturbed.written(), 4U);
  for (const Fails fails : {Fails::once, Fails::fromThenOn}) {
    for (int number = 1; number <= calls; ++number) {
      SCOPED_TRACE(std::string(fails == Fails::once ? "only " : "from ") + std::to_string(number));
      ObservedRun run;
      run.runFailing(hook, number, fails);
      run.expectWellEnded();
      run.expectOneVerdictOnEachFile();
      run.expectCountersToAddUp();
      EXPECT_TRUE(run.isNamed() || run.written() >= undisturbed.written());
    }
  }
}

}  // namespace kestrova
