#include "support/failing_file_manager.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

using test::writeFile;
using test::writePhoto;

/// Calls the handler as the queue would, with a record of its own.
class CopyOperation : public testing::Test {
 protected:
  CopyOperation() { manager().processQueue = std::make_shared<OperationQueue>(); }

  void copy(const Path& from, const Path& target) {
    manager().copyOperation(
        recordOf({.handler = PlanEntry::Handler::copy, .from = from, .to = target}, operation));
    program.settle();
  }
  void fail(int code) {
    files->onStageCopy = [code](const Path&, const Path&) { return FileError{code, "on purpose"}; };
  }
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }

  std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  test::HeadlessProgram program{files};
  std::shared_ptr<InvocationOperation> operation = std::make_shared<InvocationOperation>();
  const Path photo = writePhoto(program.source / "a.jpg", 1000);
  const Path to = program.target / "2014" / "05" / "A.JPG";
};

}  // namespace

TEST_F(CopyOperation, CreatesTheFolderCopiesTheFileAndCountsIt) {
  copy(photo, to);
  EXPECT_EQ(test::readFile(to), test::readFile(photo));
  EXPECT_EQ(manager().tPhotoCount, 1);
  EXPECT_EQ(manager().tPhotoSize, 1000);
  EXPECT_EQ(manager().tTotalCount, 1);
  EXPECT_EQ(manager().appStatus, 3);
  EXPECT_EQ(program.status(), QStringLiteral("Copying Photo (JPG) 1"));
  EXPECT_TRUE(program.log.holds(QStringLiteral("Copy successful")));
  EXPECT_TRUE(program.log.holds(QString::fromStdString(to.native())));
}

TEST_F(CopyOperation, NumbersItsStatusAfterWhatWasWritten) {
  manager().tTotalCount = 41;
  copy(photo, to);
  EXPECT_EQ(program.status(), QStringLiteral("Copying Photo (JPG) 42"));
  copy(writePhoto(program.source / "b.mkv", 10), program.target / "B.MKV");
  EXPECT_EQ(program.status(), QStringLiteral("Copying VIDEO 2"));
}

TEST_F(CopyOperation, AnnouncesAFileOfBothKindsAsAVideoInTheEnd) {
  manager().extensionImages = QStringLiteral("(,mov,)");
  copy(writePhoto(program.source / "a.mov", 10), program.target / "A.MOV");
  EXPECT_EQ(program.status(), QStringLiteral("Copying VIDEO 1"));
}

TEST_F(CopyOperation, AnnouncesTheSourcesKindAndCountsTheTargets) {
  copy(photo, program.target / "A.MOV");
  EXPECT_EQ(program.status(), QStringLiteral("Copying Photo (JPG) 1"));
  EXPECT_EQ(manager().tPhotoCount, 0);
  EXPECT_EQ(manager().tVideoCount, 1);
  EXPECT_EQ(manager().tVideoSize, 1000);
}

TEST_F(CopyOperation, ThatIsCancelledLeavesOnlyTheStage) {
  operation->cancel();
  copy(photo, to);
  EXPECT_EQ(manager().appStatus, 3);
  EXPECT_FALSE(std::filesystem::exists(to.parent_path()));
  EXPECT_TRUE(program.statusTexts().isEmpty());
  EXPECT_EQ(manager().tTotalCount, 0);
}

TEST_F(CopyOperation, LeavesAnExistingTargetUntouchedAndCountsIt) {
  writeFile(to, "mine");
  manager().targetExistCount = 2;
  copy(photo, to);
  EXPECT_EQ(test::readFile(to), "mine");
  EXPECT_EQ(manager().targetExistCount, 3);
  EXPECT_EQ(controls().lblTargetExistCount->stringValue(), QStringLiteral("3"));
  EXPECT_TRUE(program.log.holds(QStringLiteral("Item Exist")));
  EXPECT_EQ(manager().tTotalCount, 0);
  EXPECT_FALSE(manager().haserror);
}

TEST_F(CopyOperation, CopiesAFileOfNeitherKindWithoutAWord) {
  copy(writeFile(program.source / "notes.txt", "text"), program.target / "FILE.TXT");
  EXPECT_EQ(test::readFile(program.target / "FILE.TXT"), "text");
  EXPECT_TRUE(program.statusTexts().isEmpty());
  EXPECT_EQ(controls().trgTotalCount->stringValue(), QStringLiteral("0"));
}

TEST_F(CopyOperation, OnAFullVolumeEndsTheRun) {
  fail(ENOSPC);
  manager().processQueue->setSuspended(true);
  const auto waiting = std::make_shared<InvocationOperation>();
  manager().processQueue->addOperation(waiting);
  controls().buttonStart->setTitle(QStringLiteral("Pause"));
  copy(photo, to);
  EXPECT_TRUE(program.log.holds(QStringLiteral("There is not enough space at destination")));
  EXPECT_TRUE(waiting->isCancelled());
  EXPECT_EQ(controls().buttonStart->title(), QStringLiteral("Start"));
  EXPECT_EQ(program.status(), QStringLiteral("Not enough space!"));
  EXPECT_TRUE(manager().haserror);
}

TEST_F(CopyOperation, DoesNotTakeTheCodeOfTheWritingPathsForAFullVolume) {
  fail(640);
  copy(photo, to);
  EXPECT_FALSE(manager().haserror);
  EXPECT_EQ(program.status(), QStringLiteral("Copying Photo (JPG) 1"));
}

TEST_F(CopyOperation, GoesOnAfterAnyOtherErrorAndAnnouncesIt) {
  fail(EACCES);
  std::vector<Verdict> verdicts;
  manager().verdictListener = [&](const Verdict& verdict) { verdicts.push_back(verdict); };
  copy(photo, to);
  EXPECT_FALSE(manager().haserror);
  EXPECT_EQ(manager().tTotalCount, 0);
  EXPECT_EQ(manager().targetExistCount, 0);
  EXPECT_FALSE(program.log.holds(QStringLiteral("Copy successful")));
  ASSERT_EQ(verdicts.size(), 1U);
  EXPECT_EQ(verdicts[0].outcome, Verdict::Outcome::failed);
  EXPECT_EQ(verdicts[0].error, "on purpose");
}

TEST_F(CopyOperation, ThatRaisesAnExceptionHaltsTheRun) {
  files->onStageCopy = [](const Path&, const Path&) -> std::optional<FileError> {
    throw std::runtime_error("on purpose");
  };
  copy(photo, to);
  EXPECT_EQ(program.status(), QStringLiteral("Error"));
  EXPECT_TRUE(program.log.holds(QStringLiteral("EXCEPTION rotateOperation : on purpose")));
  EXPECT_TRUE(manager().processQueue->isSuspended());
}

TEST_F(CopyOperation, LogsAFolderThatCannotBeCreatedAndGoesOn) {
  writeFile(program.target / "2014", "a file in the way");
  copy(photo, to);
  EXPECT_EQ(program.log.count(QStringLiteral("Error creating directory path: ")), 1);
  EXPECT_EQ(manager().tTotalCount, 0);
  EXPECT_FALSE(manager().haserror);
}

TEST_F(CopyOperation, AsksForTheSourcesSizeBeforeItCopies) {
  std::atomic<bool> isCopying = false;
  files->onStageCopy = [&](const Path&, const Path&) -> std::optional<FileError> {
    isCopying = true;
    return std::nullopt;
  };
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path == photo && isCopying) return FileError{EACCES, "refused"};
    return std::nullopt;
  };
  copy(photo, to);
  EXPECT_EQ(manager().tPhotoCount, 1);
  EXPECT_EQ(manager().tPhotoSize, 1000);
}

TEST_F(CopyOperation, CountsTheSizeThatTheSourceHadBeforeIt) {
  files->onAttributes = [this](const Path& path) {
    return path == photo ? std::optional(FileError{EACCES, "refused"}) : std::nullopt;
  };
  copy(photo, to);
  EXPECT_EQ(manager().tPhotoCount, 1);
  EXPECT_EQ(manager().tPhotoSize, 0);
}

TEST_F(CopyOperation, KeepsPermissionsAndModificationTime) {
  test::setModified(photo, "2011:02:03 04:05:06");
  std::filesystem::permissions(photo, std::filesystem::perms::owner_read);
  copy(photo, to);
  EXPECT_EQ(std::filesystem::last_write_time(to), std::filesystem::last_write_time(photo));
  EXPECT_EQ(std::filesystem::status(to).permissions(), std::filesystem::perms::owner_read);
}

}  // namespace kestrova
