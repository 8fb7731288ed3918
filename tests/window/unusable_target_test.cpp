#include "support/sample_media.h"
#include "window_fixture.h"

#include <cerrno>

namespace kestrova::test {

namespace {

class UnusableTarget : public WindowTest {
 protected:
  void openWithFolders() {
    writeFile(folder / "in/a.jpg", jpegPhoto({}));
    open();
    addSource(folder / "in");
    setTarget(folder / "out");
  }
};

}  // namespace

TEST_F(UnusableTarget, IsToldAtStartAndNothingBegins) {
  openWithFolders();
  files->onCheckTarget = [](const Path&) { return FailingFileManager::Failure({EROFS, "read-only"}); };
  click("buttonStart");
  frame();
  EXPECT_EQ(text("remainderText"), QStringLiteral("The target folder cannot be used: read-only"));
  EXPECT_TRUE(widget<QWidget>("remainderBox").isVisible());
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Start"));
  EXPECT_TRUE(isEnabled("buttonStart"));
  EXPECT_FALSE(isEnabled("buttonStop"));
  EXPECT_FALSE(controls().manager.processQueue);
}

TEST_F(UnusableTarget, IsForgottenWhenItCanBeUsedAgain) {
  openWithFolders();
  files->onCheckTarget = [](const Path&) { return FailingFileManager::Failure({EROFS, "read-only"}); };
  click("buttonStart");
  files->onCheckTarget = nullptr;
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Completed"));
  frame();
  EXPECT_FALSE(widget<QWidget>("remainderBox").isVisible());
}

TEST_F(UnusableTarget, IsNotLookedAtBeforeBothStepsAreDone) {
  open();
  setTarget(folder / "out");
  files->onCheckTarget = [](const Path&) { return FailingFileManager::Failure({EROFS, "read-only"}); };
  click("buttonStart");
  EXPECT_TRUE(waitForStatus("Please complete step 1 and 2 first"));
  EXPECT_FALSE(widget<QWidget>("remainderBox").isVisible());
}

}  // namespace kestrova::test
