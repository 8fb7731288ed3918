#include "run_fixture.h"
#include "support/headless_program.h"

#include <cerrno>
#include <string>

// What the window shows when a run has ended.

namespace kestrova::test {

namespace {

TEST_F(ARun, ThatFindsNothingShowsThat) {
  std::filesystem::create_directory(folder / "in");
  openWithFolders();
  click("buttonStart");
  EXPECT_TRUE(
      eventually([this] { return text("progressText") == QStringLiteral("No photos or videos found"); }));
  EXPECT_FALSE(isEnabled("buttonStart"));
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Pause"));
  EXPECT_TRUE(isEnabled("buttonStop"));
}

TEST_F(ARun, ThatFindsNothingSaysHowToGoOn) {
  std::filesystem::create_directory(folder / "in");
  std::filesystem::create_directory(folder / "out");
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("remainderBox").isVisible(); }));
  EXPECT_TRUE(text("remainderText").contains(QStringLiteral("close Kestrova and open it again")));
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Kestrova"));
  EXPECT_FALSE(widget<QWidget>("buttonOpenTarget").isVisible()) << "nothing was put there";
}

TEST_F(ARun, OpensItsTargetAtTheEnd) {
  writeAlbum();
  openWithFolders();
  EXPECT_FALSE(widget<QWidget>("buttonOpenTarget").isVisible());
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("buttonOpenTarget").isVisible(); }));
  click("buttonOpenTarget");
  EXPECT_EQ(workspace->addresses,
            QStringList(QStringLiteral("file://") + QString::fromStdString((folder / "out").native())));
}

TEST_F(ARun, TellsTheDesktopOfItsEndWhenTheUserIsElsewhere) {
  writeAlbum();
  holdCopies();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(isExecuting());
  QWidget elsewhere;
  elsewhere.show();
  elsewhere.activateWindow();
  ASSERT_TRUE(eventually([this] { return !window->isActiveWindow(); }));
  letGo();
  ASSERT_TRUE(eventually([this] { return !desktop->messages.isEmpty(); }));
  EXPECT_EQ(desktop->messages, QStringList(QStringLiteral("Completed: 3 files written.")));
}

TEST_F(ARun, TellsTheDesktopNothingWhenTheUserIsLooking) {
  writeAlbum();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("buttonOpenTarget").isVisible(); }));
  EXPECT_TRUE(desktop->messages.isEmpty());
}

TEST_F(ARun, SaysWhatItCouldNotWrite) {
  writeAlbum();
  files->onStageCopy = [](const Path& from, const Path&) -> std::optional<FileError> {
    if (from.filename() == "a.jpg") return FileError{EFBIG, "Input/output error"};
    return std::nullopt;
  };
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("remainderBox").isVisible(); }));
  EXPECT_EQ(text("remainderText"), QStringLiteral("1 file could not be written."));
}

TEST_F(ARun, ForgetsWhatTheLastOneLeft) {
  for (const char name : {'a', 'b'}) {
    const Path photo = writeFile(folder / "in" / (std::string(1, name) + ".jpg"), std::string(1000, name));
    setModified(photo, "2015:01:01 00:00:00");
  }
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("remainderBox").isVisible(); }));
  EXPECT_EQ(text("remainderText"), QStringLiteral("1 file was left out, as another file has its name."));
  EXPECT_TRUE(widget<QWidget>("lblTargetExistCount").isVisible());
  click("buttonStart");
  EXPECT_FALSE(widget<QWidget>("remainderBox").isVisible());
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("remainderBox").isVisible(); }));
  EXPECT_EQ(text("remainderText"), QStringLiteral("2 files were in the target already."));
  EXPECT_FALSE(widget<QWidget>("lblTargetExistCount").isVisible()) << "that was the last run's";
}

TEST_F(ARun, ThatCannotStartLeavesTheLastOnesEndInSight) {
  open();
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Please complete step 1 and 2 first"));
  constexpr int moreThanATick = 700;  // milliseconds
  QTest::qWait(moreThanATick);
  EXPECT_FALSE(widget<QWidget>("remainderBox").isVisible());
}

}  // namespace

}  // namespace kestrova::test
