#include "app/manager/planner_fixture.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::nameOf;
using test::writeFile;

class PlannerChoice : public test::PlannerTest {
 protected:
  /// The status of each operation is displayed before it writes.
  PlannerChoice() {
    files->onStageCopy = [](const Path&, const Path&) { return shown(); };
    files->onStageData = [](ByteView, const Path&) { return shown(); };
  }
  static std::optional<FileError> shown() {
    test::letTheMainThreadCatchUp();
    return std::nullopt;
  }
};

}  // namespace

TEST_F(PlannerChoice, CopiesAVideoWhateverTheResolution) {
  writeVideo("clip.mov", 500);
  controls().comboResolution->chooseItem(2);
  program.run();
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Copying VIDEO 1")));
}

TEST_F(PlannerChoice, CopiesATurnedPhotoWhenItIsNotToStandUpright) {
  const Path photo = writeJpeg("a.jpg", {.orientation = 6, .digitized = "2014:05:21 13:45:02"});
  controls().chkRotate->performClick();
  program.run();
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Copying Photo (JPG) 1")));
  EXPECT_EQ(test::readFile(program.target / nameOf(photo, "2014/05/21/PHOTO_20140521134502_", ".JPG")),
            test::readFile(photo));
}

TEST_F(PlannerChoice, HandsATurnedPhotoToResizingAtItsOwnSize) {
  writeJpeg("a.jpg", {.orientation = 6});
  program.run();
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Rotating photo 1")));
  EXPECT_EQ(manager().tRotatedCount, 1);
}

TEST_F(PlannerChoice, HandsATaggedPhotoToResizingWithTheChosenResolution) {
  writeJpeg("a.jpg", {.width = 1600, .height = 1200, .orientation = 1});
  controls().comboResolution->chooseItem(1);
  program.run();
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Resizing photo 1 for 720P")));
}

TEST_F(PlannerChoice, HandsAPhotoWithoutOrientationToResizingWithoutItsResolution) {
  writeJpeg("a.jpg", {.width = 1600, .height = 1200});
  controls().comboResolution->chooseItem(1);
  program.run();
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Rotating photo 1")));
  EXPECT_EQ(manager().tRotatedCount, 1);
}

TEST_F(PlannerChoice, HandsATurnedPhotoToResizingWithoutAWordWhenNoResolutionIsChosen) {
  writeJpeg("a.jpg", {.orientation = 8});
  controls().comboResolution->selectItemAtIndex(-1);
  program.run();
  EXPECT_EQ(manager().tRotatedCount, 1);
  EXPECT_FALSE(program.statusTexts().contains(QStringLiteral("Rotating photo 1")));
}

TEST_F(PlannerChoice, CopiesATurnedPhotoWhenTurningIsNeitherOnNorOff) {
  writeJpeg("a.jpg", {.orientation = 6});
  controls().chkRotate->setState(CheckBox::mixed);
  program.run();
  EXPECT_EQ(manager().tPhotoCount, 1);
  EXPECT_EQ(manager().tRotatedCount, 0);
}

TEST_F(PlannerChoice, TellsAnOperationWhichOneItIs) {
  Bytes photo = test::jpegPhoto({.orientation = 6});
  photo.resize(photo.size() / 2);  // copied, as it does not decode
  writeFile(program.source / "a.jpg", ByteView(photo));
  files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
    manager().processQueue->cancelAllOperations();
    return std::nullopt;
  };
  program.run();
  EXPECT_EQ(program.log.count(QStringLiteral("CANCELLLED")), 1)
      << "the operation did not see its cancellation";
}

}  // namespace kestrova
