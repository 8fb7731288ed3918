#include "imaging/photo_properties.h"
#include "imaging/photo_rewrite.h"
#include "support/failing_file_manager.h"
#include "support/headless_program.h"
#include "support/rewriting.h"
#include "support/sample_media.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::SamplePhoto;
using test::writeFile;

/// Calls the handler as the queue would.
class ResizeOperation : public testing::Test {
 protected:
  ResizeOperation() { manager().processQueue = std::make_shared<OperationQueue>(); }

  Path write(const SamplePhoto& photo) {
    return writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto(photo)));
  }
  void resize(const Path& from, Resolution resolution, std::optional<std::int64_t> orientation = 1) {
    manager().verdictListener = [this](const Verdict& verdict) { verdicts.push_back(verdict); };
    manager().resizeOperation(recordOf({.handler = PlanEntry::Handler::resize,
                                        .from = from,
                                        .to = to,
                                        .orientation = orientation,
                                        .resolution = resolution},
                                       operation));
    program.settle();
  }
  imaging::ImageSize written() { return test::sizeOf(test::bytesOf(to)).value(); }
  void expectSize(std::int64_t width, std::int64_t height) {
    EXPECT_EQ(written().stored.width, width);
    EXPECT_EQ(written().stored.height, height);
  }
  void expectCopied(const Path& from) {
    EXPECT_EQ(test::readFile(to), test::readFile(from));
    EXPECT_EQ(manager().tPhotoCount, 1);
    EXPECT_EQ(manager().tRotatedCount, 0);
    EXPECT_EQ(program.log.count(QStringLiteral("INVALID IMAGE : file://")), 1);
  }
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }

  std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  test::HeadlessProgram program{files};
  std::shared_ptr<InvocationOperation> operation = std::make_shared<InvocationOperation>();
  std::vector<Verdict> verdicts;
  const Path to = program.target / "2014" / "A.JPG";
};

}  // namespace

TEST_F(ResizeOperation, FitsAPhotoInto720P) {
  resize(write({.width = 2000, .height = 1500}), Resolution::fit720p);
  expectSize(960, 720);
  EXPECT_EQ(program.status(), QStringLiteral("Resizing photo 1 for 720P"));
  EXPECT_EQ(manager().tRotatedCount, 1);
  EXPECT_EQ(manager().tRotatedSize, static_cast<std::int64_t>(std::filesystem::file_size(to)));
  EXPECT_EQ(manager().tPhotoCount, 0);
  ASSERT_EQ(verdicts.size(), 1U);
  EXPECT_EQ(verdicts[0].outcome, Verdict::Outcome::resized);
}

TEST_F(ResizeOperation, FitsAPhotoInto1080P) {
  manager().tRotatedCount = 7;
  resize(write({.width = 2400, .height = 1200}), Resolution::fit1080p);
  expectSize(1920, 960);
  EXPECT_EQ(program.status(), QStringLiteral("Resizing photo 8 for 1080P"));
}

TEST_F(ResizeOperation, RewritesAPhotoThatFitsWithoutEnlargingIt) {
  resize(write({.width = 1000, .height = 700}), Resolution::fit720p);
  expectSize(1000, 700);
  EXPECT_EQ(verdicts.at(0).outcome, Verdict::Outcome::rewritten);
}

TEST_F(ResizeOperation, KeepsTheSizeForResolution0) {
  resize(write({.width = 1600, .height = 1200}), Resolution::original);
  expectSize(1600, 1200);
  EXPECT_EQ(program.status(), QStringLiteral("Rotating photo 1"));
}

TEST_F(ResizeOperation, KeepsTheSizeForARecordThatEndsBeforeItsResolution) {
  resize(write({.width = 1600, .height = 1200}), Resolution::fit720p, std::nullopt);
  expectSize(1600, 1200);
  EXPECT_EQ(program.status(), QStringLiteral("Rotating photo 1"));
}

TEST_F(ResizeOperation, KeepsTheSizeWithoutAWordWhenNoResolutionIsChosen) {
  resize(write({.width = 1600, .height = 1200, .orientation = 6}), Resolution::none, 6);
  expectSize(1200, 1600);
  EXPECT_TRUE(program.statusTexts().isEmpty());
}

TEST_F(ResizeOperation, TurnsAPhotoUprightAndSetsItsTag) {
  resize(write({.width = 1600, .height = 1200, .orientation = 6}), Resolution::fit720p, 6);
  expectSize(540, 720);
  EXPECT_EQ(written().orientation, 1);
}

TEST_F(ResizeOperation, KeepsPixelsAndTagAsStoredWhenPhotosAreNotTurned) {
  controls().chkRotate->performClick();
  resize(write({.width = 1600, .height = 1200, .orientation = 6}), Resolution::fit720p, 6);
  expectSize(960, 720);
  EXPECT_EQ(written().orientation, 6);
}

TEST_F(ResizeOperation, LogsTheDecodedSize) {
  const Path from = write({.width = 640, .height = 480});
  resize(from, Resolution::fit720p);
  EXPECT_TRUE(
      program.log.holds(QStringLiteral("RESIZING PHOTOOOOO! : ") + QString::fromStdString(from.native())));
  EXPECT_TRUE(program.log.holds(QStringLiteral("Width from NSBitmapImageRep: 640.000000")));
  EXPECT_TRUE(program.log.holds(QStringLiteral("Height from NSBitmapImageRep: 480.000000")));
}

TEST_F(ResizeOperation, LeavesOutAPhotoWithASideBelow400WhenAsked) {
  controls().chkFilterSmallPhotos->performClick();
  const Path from = write({.width = 399, .height = 3000});
  resize(from, Resolution::fit720p);
  EXPECT_FALSE(std::filesystem::exists(to));
  EXPECT_EQ(manager().tFilteredCount, 1);
  EXPECT_EQ(manager().tFilteredSize, static_cast<std::int64_t>(std::filesystem::file_size(from)));
  EXPECT_EQ(verdicts.at(0).outcome, Verdict::Outcome::small);
}

TEST_F(ResizeOperation, LeavesOutAPhotoForItsHeightAlone) {
  controls().chkFilterSmallPhotos->performClick();
  resize(write({.width = 3000, .height = 399}), Resolution::original);
  EXPECT_FALSE(std::filesystem::exists(to));
  EXPECT_EQ(manager().tFilteredCount, 1);
}

TEST_F(ResizeOperation, LeavesOutNothingForAFilterThatIsNeitherOnNorOff) {
  controls().chkFilterSmallPhotos->setState(CheckBox::mixed);
  resize(write({.width = 90, .height = 60}), Resolution::original);
  expectSize(90, 60);
  EXPECT_EQ(manager().tFilteredCount, 0);
}

TEST_F(ResizeOperation, KeepsPixelsAndTagAsStoredWhenTurningIsNeitherOnNorOff) {
  controls().chkRotate->setState(CheckBox::mixed);
  resize(write({.width = 640, .height = 480, .orientation = 6}), Resolution::original, 6);
  expectSize(640, 480);
  EXPECT_EQ(written().orientation, 6);
}

TEST_F(ResizeOperation, TakesAPhotoOf400By400WithTheFilterOn) {
  controls().chkFilterSmallPhotos->performClick();
  resize(write({.width = 400, .height = 400}), Resolution::fit720p);
  expectSize(400, 400);
}

TEST_F(ResizeOperation, CopiesAFileThatDoesNotDecode) {
  const Path from = writeFile(program.source / "a.jpg", "no photo at all");
  resize(from, Resolution::fit720p);
  expectCopied(from);
  EXPECT_TRUE(program.log.holds(QStringLiteral("Width from NSBitmapImageRep: 0.000000")));
}

TEST_F(ResizeOperation, CopiesAPhotoThatIsCutOff) {
  Bytes photo = test::jpegPhoto({.width = 1600, .height = 1200});
  photo.resize(photo.size() / 2);
  const Path from = writeFile(program.source / "a.jpg", ByteView(photo));
  resize(from, Resolution::fit720p);
  expectCopied(from);
}

TEST_F(ResizeOperation, CopiesASmallPhotoThatIsCutOffEvenWithTheFilterOn) {
  controls().chkFilterSmallPhotos->performClick();
  Bytes photo = test::jpegPhoto({.width = 300, .height = 300});
  photo.resize(photo.size() / 2);
  const Path from = writeFile(program.source / "a.jpg", ByteView(photo));
  resize(from, Resolution::fit720p);
  expectCopied(from);
}

TEST_F(ResizeOperation, CountsAnExistingTargetOfACopiedFile) {
  writeFile(to, "mine");
  resize(writeFile(program.source / "a.jpg", "no photo"), Resolution::fit720p);
  EXPECT_EQ(test::readFile(to), "mine");
  EXPECT_EQ(manager().targetExistCount, 1);
}

TEST_F(ResizeOperation, ReplacesWhatStandsUnderItsName) {
  writeFile(to, "old");
  resize(write({.width = 640, .height = 480}), Resolution::fit720p);
  expectSize(640, 480);
}

TEST_F(ResizeOperation, ThatIsCancelledDoesNothingButSetTheStage) {
  operation->cancel();
  resize(write({}), Resolution::fit720p);
  EXPECT_EQ(manager().appStatus, 3);
  EXPECT_FALSE(std::filesystem::exists(to.parent_path()));
  EXPECT_TRUE(program.statusTexts().isEmpty());
}

TEST_F(ResizeOperation, TakesAnyFailureToWriteForAFullVolume) {
  files->onStageData = [](ByteView, const Path&) { return FileError{EACCES, "refused"}; };
  controls().buttonStart->setTitle(QStringLiteral("Pause"));
  resize(write({.width = 640, .height = 480}), Resolution::fit720p);
  EXPECT_TRUE(program.log.holds(QStringLiteral("No space left!!!!!")));
  EXPECT_EQ(program.status(), QStringLiteral("Not enough space!"));
  EXPECT_EQ(controls().buttonStart->title(), QStringLiteral("Start"));
  EXPECT_TRUE(manager().haserror);
  EXPECT_EQ(manager().tRotatedCount, 0);
  EXPECT_EQ(verdicts.at(0).outcome, Verdict::Outcome::failed);
}

TEST_F(ResizeOperation, ThatRaisesAnExceptionHaltsTheRun) {
  files->onStageData = [](ByteView, const Path&) -> std::optional<FileError> {
    throw std::runtime_error("on purpose");
  };
  resize(write({}), Resolution::fit720p);
  EXPECT_EQ(program.status(), QStringLiteral("Error"));
  EXPECT_TRUE(program.log.holds(QStringLiteral("EXCEPTION resizeOperation : on purpose")));
  EXPECT_TRUE(manager().processQueue->isSuspended());
}

TEST_F(ResizeOperation, LogsACancelAndAPauseThatCameWhileItCopied) {
  files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
    operation->cancel();
    manager().processQueue->setSuspended(true);
    for (int i = 0; i < 3; ++i) manager().processQueue->addOperation(std::make_shared<InvocationOperation>());
    return std::nullopt;
  };
  resize(writeFile(program.source / "a.jpg", "no photo"), Resolution::fit720p);
  EXPECT_TRUE(program.log.holds(QStringLiteral("CANCELLLED")));
  EXPECT_TRUE(program.log.holds(QStringLiteral("SUSPENDED : 3")));
}

TEST_F(ResizeOperation, WritesThePhotosContentTypeWhateverItsNameSays) {
  const Path from =
      writeFile(program.source / "a.jpg", ByteView(test::pngPhoto({.width = 1600, .height = 1200})));
  resize(from, Resolution::fit720p);
  expectSize(960, 720);
  EXPECT_EQ(test::readFile(to).substr(1, 3), "PNG");
}

}  // namespace kestrova
