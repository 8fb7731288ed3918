#include "cli/run.h"
#include "support/failing_file_manager.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <pthread.h>

// Runs with a file system that fails, or brings a signal, at a moment of the test's choice.

namespace kestrova::cli {

namespace {

using test::FailingFileManager;
using test::TemporaryFolder;
using test::writeFile;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class CliRun : public testing::Test {
 protected:
  CliRun() {
    for (const char* text : {"1", "22", "333", "4444"}) writeFile(in_ / (std::string(text) + ".jpg"), text);
    arguments_.sources = {in_};
    arguments_.target = out_;
    arguments_.jobs = 1;  // calls come in the order of the files
  }

  Summary organise() {
    return cli::organise(arguments_, files_, {.stop = stop_, .progress = progress_}, findings_);
  }

  /// A hook that does something on its `number`th call.
  static auto atCall(int number, std::function<void()> block) {
    return [left = number, block = std::move(block)](const auto&...) mutable {
      if (--left == 0) block();
      return FailingFileManager::Failure();
    };
  }
  static void fail() { throw std::runtime_error("out of order"); }
  /// The user's Ctrl-C, and time to notice it.
  static std::function<void()> ctrlC() {
    return [main = pthread_self()] {
      pthread_kill(main, SIGINT);
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    };
  }

  TemporaryFolder root_;
  Path in_ = root_ / "in";
  Path out_ = root_ / "out";
  OrganiseArguments arguments_;
  std::shared_ptr<FailingFileManager> files_ = std::make_shared<FailingFileManager>();
  StopSignals stop_;
  Progress progress_{Progress::Mode::silent};
  Findings findings_;
};

}  // namespace

TEST_F(CliRun, KeepsTheRowsOfFilesWhereTheyAreWanted) {
  arguments_.noRecord = true;
  findings_.keepsRows = true;
  organise();
  EXPECT_THAT(findings_.rows, SizeIs(4));
}

TEST_F(CliRun, CompletesAndCountsEveryFile) {
  const Summary summary = organise();
  EXPECT_EQ(summary.end, RunEnd::completed);
  EXPECT_EQ(exitStatus(summary), 0);
  EXPECT_EQ(summary.written.total.files, 4);
  EXPECT_EQ(summary.written.total.bytes, 10);
  EXPECT_EQ(findings_.tally.settled().files, 4);
}

TEST_F(CliRun, EndsInErrorWhenAnOperationMeetsAnException) {
  files_->onStageCopy = atCall(2, fail);
  const Summary summary = organise();
  EXPECT_EQ(summary.end, RunEnd::error);
  EXPECT_EQ(exitStatus(summary), 1);
  EXPECT_EQ(summary.status, QStringLiteral("Error"));
  EXPECT_EQ(summary.written.total.files, 1);
  EXPECT_THAT(test::filesBelow(out_), SizeIs(1));
}

TEST_F(CliRun, EndsInErrorWhenPlanningMeetsAnException) {
  for (const int call : {1, 4}) {
    files_->onAttributes = atCall(call, fail);
    const Summary summary = organise();
    EXPECT_EQ(summary.end, RunEnd::error);
    EXPECT_EQ(summary.status, QStringLiteral("EXCEPTION copyFiles : out of order"));
    EXPECT_THAT(test::filesBelow(out_), IsEmpty());
  }
}

TEST_F(CliRun, StopsOnASignalThatCameFirst) {
  std::raise(SIGTERM);
  const Summary summary = organise();
  EXPECT_EQ(exitStatus(summary), 130);
  EXPECT_THAT(test::filesBelow(out_), IsEmpty());
}

TEST_F(CliRun, StopsWhilePlanning) {
  for (const int call : {1, 4}) {
    files_->onAttributes = atCall(call, ctrlC());
    const Summary summary = organise();
    EXPECT_EQ(summary.end, RunEnd::stopped);
    EXPECT_EQ(summary.status, QStringLiteral("Stopped"));
    EXPECT_THAT(test::filesBelow(out_), IsEmpty());
  }
}

TEST_F(CliRun, FinishesTheCurrentFileWhenStopped) {
  files_->onStageCopy = atCall(2, ctrlC());
  const Summary summary = organise();
  EXPECT_EQ(exitStatus(summary), 130);
  EXPECT_EQ(summary.written.total.files, 2);
  EXPECT_EQ(summary.notReached.files, 2);
  EXPECT_THAT(test::filesBelow(out_), SizeIs(2));
}

TEST_F(CliRun, DoesNotHangWhenAStoppedOperationMeetsAnException) {
  files_->onStageCopy = atCall(1, [stop = ctrlC()] {
    stop();
    fail();
  });
  EXPECT_EQ(exitStatus(organise()), 130);
}

}  // namespace kestrova::cli
