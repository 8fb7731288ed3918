#include "support/failing_file_manager.h"
#include "support/headless_program.h"
#include "support/sample_media.h"
#include "toolkit/image_codec.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::writeFile;

class RotateOperation : public testing::Test {
 protected:
  RotateOperation() { manager().processQueue = std::make_shared<OperationQueue>(); }

  void rotate(const Path& from) {
    manager().rotateOperation(
        {{"from", OperationRecord::FileUrl(from)}, {"to", OperationRecord::FileUrl(to)}});
    program.settle();
  }
  void writeData(const Path& target, const std::optional<Bytes>& data) {
    std::optional<OperationRecord::Value> value;
    if (data) value = *data;
    manager().writeDataOperation({{"to", OperationRecord::FileUrl(target)}, {"data", value}});
    program.settle();
  }
  static std::shared_ptr<InvocationOperation> cancelledOperation() {
    auto operation = std::make_shared<InvocationOperation>();
    operation->cancel();
    return operation;
  }
  void failToStage(int code) {
    files->onStageData = [code](ByteView, const Path&) { return FileError{code, "on purpose"}; };
  }
  OrganiseManager& manager() { return program.manager(); }

  std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  test::HeadlessProgram program{files};
  const Path to = program.target / "2014" / "A.PNG";
};

using WriteDataOperation = RotateOperation;

}  // namespace

TEST_F(RotateOperation, WritesAJpegWhateverTheNamesOfSourceAndTarget) {
  const Path from =
      writeFile(program.source / "a.png", ByteView(test::pngPhoto({.width = 64, .height = 48})));
  rotate(from);
  EXPECT_EQ(test::readFile(to).substr(0, 3), "\xff\xd8\xff");
  EXPECT_EQ(program.status(), QStringLiteral("Rotating photo : ") + QString::fromStdString(from.native()));
  EXPECT_TRUE(program.log.holds(QStringLiteral("ROTATING PHOTOOOOO!")));
  EXPECT_TRUE(program.log.holds(QStringLiteral("file://") + QString::fromStdString(to.native())));
  EXPECT_EQ(manager().tRotatedCount, 1);
  EXPECT_EQ(manager().tRotatedSize, static_cast<std::int64_t>(std::filesystem::file_size(to)));
  EXPECT_EQ(manager().appStatus, 3);
}

TEST_F(RotateOperation, CompressesByNineTenths) {
  const Bytes photo = test::pngPhoto({.width = 64, .height = 48});
  rotate(writeFile(program.source / "a.png", ByteView(photo)));
  const auto expected =
      encodeImage(decodeImage(photo), imaging::ImageType::jpeg, {.compressionFactor = 0.9F}).value();
  EXPECT_EQ(test::readFile(to), std::string(expected.begin(), expected.end()));
}

TEST_F(RotateOperation, WritesThePhotoUpright) {
  const Bytes photo = test::pngPhoto({.width = 64, .height = 48, .orientation = 6});
  rotate(writeFile(program.source / "a.png", ByteView(photo)));
  const QImage image = decodeImage(test::bytesOf(to));
  EXPECT_EQ(image.size(), QSize(48, 64));
}

TEST_F(RotateOperation, NeedsNoPageButTheFirst) {
  test::TiffBlock photo = test::exifBlock({.thumbnail = true});  // a page that is not a picture
  test::claimSize(photo, 20, 10);
  rotate(writeFile(program.source / "a.tif", ByteView(photo.encode())));
  EXPECT_EQ(test::readFile(to).substr(0, 3), "\xff\xd8\xff");
}

TEST_F(RotateOperation, LeavesAnExistingTargetUnchangedAndCountsNothing) {
  writeFile(to, "mine");
  rotate(writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto({}))));
  EXPECT_EQ(test::readFile(to), "mine");
  EXPECT_EQ(manager().tRotatedCount, 0);
  EXPECT_FALSE(manager().haserror);
}

TEST_F(RotateOperation, CountsAPhotoOf0BytesWhenItDoesNotDecode) {
  rotate(writeFile(program.source / "a.jpg", "no photo"));
  EXPECT_FALSE(std::filesystem::exists(to));
  EXPECT_EQ(manager().tRotatedCount, 1);
  EXPECT_EQ(manager().tRotatedSize, 0);
}

TEST_F(RotateOperation, OnAFullVolumeEndsTheRun) {
  failToStage(ENOSPC);
  rotate(writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto({}))));
  EXPECT_TRUE(program.log.holds(QStringLiteral("No space left!!!!!")));
  EXPECT_EQ(program.status(), QStringLiteral("Not enough space!"));
  EXPECT_EQ(program.interface->buttonStart->title(), QStringLiteral("Start"));
  EXPECT_TRUE(manager().haserror);
  EXPECT_FALSE(manager().processQueue->isSuspended());
}

TEST_F(RotateOperation, IgnoresAnyOtherFailure) {
  failToStage(512);
  rotate(writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto({}))));
  EXPECT_FALSE(manager().haserror);
  EXPECT_EQ(manager().tRotatedCount, 0);
}

TEST_F(RotateOperation, ShowsAnExceptionInFullAndHaltsTheRun) {
  files->onStageData = [](ByteView, const Path&) -> std::optional<FileError> {
    throw std::runtime_error("on purpose");
  };
  rotate(writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto({}))));
  EXPECT_EQ(program.status(), QStringLiteral("EXCEPTION rotateOperation : on purpose"));
  EXPECT_TRUE(program.log.holds(QStringLiteral("EXCEPTION rotateOperation : on purpose")));
  EXPECT_TRUE(manager().processQueue->isSuspended());
}

TEST_F(RotateOperation, HeedsNoCancellation) {
  const Path from = writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto({})));
  const auto operation = cancelledOperation();
  manager().rotateOperation({{"from", OperationRecord::FileUrl(from)},
                             {"to", OperationRecord::FileUrl(to)},
                             {"operation", operation}});
  EXPECT_TRUE(std::filesystem::exists(to));
  EXPECT_EQ(manager().tRotatedCount, 1);
}

TEST_F(WriteDataOperation, HeedsNoCancellation) {
  const auto operation = cancelledOperation();
  manager().writeDataOperation({{"to", OperationRecord::FileUrl(program.target / "a.jpg")},
                                {"data", Bytes{1}},
                                {"operation", operation}});
  EXPECT_TRUE(std::filesystem::exists(program.target / "a.jpg"));
  EXPECT_EQ(manager().tRotatedCount, 1);
}

TEST_F(WriteDataOperation, LeavesAnExceptionToTheQueue) {
  files->onStageData = [](ByteView, const Path&) -> std::optional<FileError> {
    throw std::runtime_error("on purpose");
  };
  EXPECT_THROW(writeData(program.target / "a.jpg", Bytes{1}), std::runtime_error);
  EXPECT_FALSE(manager().processQueue->isSuspended());
  EXPECT_EQ(manager().tRotatedCount, 0);
}

TEST_F(WriteDataOperation, WritesTheBytesAndCountsThem) {
  writeData(program.target / "a.jpg", Bytes{1, 2, 3});
  EXPECT_EQ(test::readFile(program.target / "a.jpg"), "\1\2\3");
  EXPECT_EQ(manager().tRotatedCount, 1);
  EXPECT_EQ(manager().tRotatedSize, 3);
  EXPECT_EQ(manager().appStatus, 0);
  EXPECT_TRUE(program.statusTexts().isEmpty());
}

TEST_F(WriteDataOperation, WritesNothingIntoAFolderThatDoesNotExist) {
  writeData(program.target / "missing" / "a.jpg", Bytes{1});
  EXPECT_FALSE(std::filesystem::exists(program.target / "missing"));
  EXPECT_EQ(manager().tRotatedCount, 0);
  EXPECT_TRUE(program.log.lines().isEmpty());
}

TEST_F(WriteDataOperation, WithoutDataCountsAPhotoOf0BytesAndWritesNoFile) {
  writeData(program.target / "a.jpg", std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(program.target / "a.jpg"));
  EXPECT_EQ(manager().tRotatedCount, 1);
  EXPECT_EQ(manager().tRotatedSize, 0);
}

TEST_F(WriteDataOperation, LeavesAnExistingTargetAlone) {
  writeFile(program.target / "a.jpg", "mine");
  writeData(program.target / "a.jpg", Bytes{1});
  EXPECT_EQ(test::readFile(program.target / "a.jpg"), "mine");
  EXPECT_EQ(manager().tRotatedCount, 0);
}

TEST_F(WriteDataOperation, OnAFullVolumePausesTheQueueUntilItIsContinued) {
  failToStage(ENOSPC);
  auto& queue = *manager().processQueue;
  queue.setMaxConcurrentOperationCount(1);
  program.chooseFolders();
  queue.setSuspended(true);
  for (const char* name : {"a.jpg", "b.jpg"}) {
    const auto operation = std::make_shared<InvocationOperation>();
    operation->init(
        &manager(), &OrganiseManager::writeDataOperation,
        OperationRecord{{"to", OperationRecord::FileUrl(program.target / name)}, {"data", Bytes{1}}});
    queue.addOperation(operation);
  }
  queue.setSuspended(false);
  queue.waitUntilIdle();
  program.settle();
  EXPECT_TRUE(queue.isSuspended());
  EXPECT_EQ(queue.operationCount(), 1U);
  EXPECT_TRUE(program.log.holds(QStringLiteral("No space left!!!!!")));
  EXPECT_FALSE(manager().haserror);
  EXPECT_TRUE(program.statusTexts().isEmpty());
  files->onStageData = nullptr;
  manager().startProcess();
  queue.waitUntilIdle();
  EXPECT_EQ(queue.operationCount(), 0U);
  EXPECT_TRUE(std::filesystem::exists(program.target / "b.jpg"));
}

}  // namespace kestrova
