#include "support/headless_program.h"
#include "support/sample_media.h"
#include "support/small_volume.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

constexpr std::size_t volumeSize = 64 * 1024;

using FileUrl = OperationRecord::FileUrl;

/// Runs one operation, as a worker would, on a volume that is too small for what it writes.
class OperationsOnAFullVolume : public testing::Test {
 protected:
  OperationsOnAFullVolume() {
    program.manager().processQueue = std::make_shared<OperationQueue>();
    program.manager().processQueue->setSuspended(true);
    program.manager().processQueue->addOperation(waiting);
    program.manager().processQueue->setMaxConcurrentOperationCount(1);
  }

  void run(const std::function<void(const Path& target)>& operation) {
    const bool isAllowed = test::withSmallVolume(volumeSize, [&](const Path& volume) {
      operation(volume / "photo.jpg");
      EXPECT_TRUE(test::filesBelow(volume).empty());
    });
    program.settle();
    if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
  }
  void expectEnded() {
    EXPECT_EQ(program.status(), QStringLiteral("Not enough space!"));
    EXPECT_TRUE(waiting->isCancelled());
    EXPECT_TRUE(program.manager().haserror);
    EXPECT_EQ(program.manager().tTotalCount, 0);
  }

  test::HeadlessProgram program;
  std::shared_ptr<InvocationOperation> waiting = std::make_shared<InvocationOperation>();
  const Path photo = test::writeFile(
      program.source / "a.jpg", ByteView(test::jpegPhoto({.width = 1600, .height = 1200, .orientation = 6})));
};

}  // namespace

TEST_F(OperationsOnAFullVolume, EndTheRunWhenTheyCopy) {
  run([&](const Path& to) {
    program.manager().copyOperation({{"from", FileUrl(photo)}, {"to", FileUrl(to)}});
  });
  if (IsSkipped()) return;
  expectEnded();
  EXPECT_TRUE(program.log.holds(QStringLiteral("There is not enough space at destination")));
}

TEST_F(OperationsOnAFullVolume, EndTheRunWhenTheyResize) {
  run([&](const Path& to) {
    program.manager().resizeOperation({{"from", FileUrl(photo)}, {"to", FileUrl(to)}});
  });
  if (IsSkipped()) return;
  expectEnded();
  EXPECT_TRUE(program.log.holds(QStringLiteral("No space left!!!!!")));
}

TEST_F(OperationsOnAFullVolume, EndTheRunWhenTheyRotate) {
  run([&](const Path& to) {
    program.manager().rotateOperation({{"from", FileUrl(photo)}, {"to", FileUrl(to)}});
  });
  if (IsSkipped()) return;
  expectEnded();
  EXPECT_TRUE(program.log.holds(QStringLiteral("No space left!!!!!")));
}

TEST_F(OperationsOnAFullVolume, OnlyPauseTheRunWhenTheyWriteData) {
  auto& queue = *program.manager().processQueue;
  queue.setSuspended(false);
  queue.waitUntilIdle();
  run([&](const Path& to) {
    program.manager().writeDataOperation({{"to", FileUrl(to)}, {"data", Bytes(4 * volumeSize)}});
  });
  if (IsSkipped()) return;
  EXPECT_TRUE(program.log.holds(QStringLiteral("No space left!!!!!")));
  EXPECT_TRUE(queue.isSuspended());
  EXPECT_FALSE(program.manager().haserror);
  EXPECT_TRUE(program.statusTexts().isEmpty());
  EXPECT_EQ(program.manager().tRotatedCount, 0);
}

}  // namespace kestrova
