#include "run_fixture.h"

#include <QProgressBar>

// Starting, pausing and stopping a run in the window.

namespace kestrova::test {

namespace {

TEST_F(ARun, CompletesAndShowsWhatItFoundAndWrote) {
  writeAlbum();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Completed"));
  frame();
  EXPECT_EQ(text("lblPhotoCount"), QStringLiteral("2"));
  EXPECT_EQ(text("lblVideoCount"), QStringLiteral("1"));
  EXPECT_EQ(text("lblVideoSize"), QStringLiteral("1.91 MB"));
  EXPECT_EQ(text("lblDuplicateCount"), QStringLiteral("1"));
  EXPECT_EQ(text("lblTotalCount"), QStringLiteral("3"));
  EXPECT_EQ(text("trgPhotoCount"), QStringLiteral("2"));
  EXPECT_EQ(text("trgVideoCount"), QStringLiteral("1"));
  EXPECT_EQ(text("trgTotalCount"), QStringLiteral("3"));
  EXPECT_EQ(text("trgTotalSize"), text("lblTotalSize"));
  EXPECT_EQ(text("progressText"), QStringLiteral("3 of 3 files"));
  EXPECT_EQ(widget<QProgressBar>("processBar").value(), 3);
  EXPECT_EQ(widget<QProgressBar>("processBar").maximum(), 3);
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Start"));
  EXPECT_FALSE(isEnabled("buttonStop"));
  EXPECT_EQ(filesBelow(folder / "out").size(), 3U);
}

TEST_F(ARun, FindsItsTargetsAlreadyThereTheSecondTime) {
  writeAlbum();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Completed"));
  ASSERT_TRUE(eventually([this] { return isEnabled("buttonStart"); }));
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return text("trgExistCount") == QStringLiteral("3"); }));
  ASSERT_TRUE(waitForStatus("Completed"));
  EXPECT_EQ(text("trgTotalCount"), QString());
}

TEST_F(ARun, IsStartedByKey) {
  writeAlbum();
  openWithFolders();
  QTest::keyClick(window.get(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(waitForStatus("Completed"));
}

TEST_F(ARun, PausesAndContinuesByTheButton) {
  writeAlbum();
  holdCopies();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(isExecuting());
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Paused"));
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Continue"));
  permits.release();
  ASSERT_TRUE(eventually([this] { return text("trgTotalCount") == QStringLiteral("1"); }));
  EXPECT_EQ(begun, 1) << "nothing further starts";
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return title("buttonStart") == QStringLiteral("Pause"); }));
  letGo();
  ASSERT_TRUE(waitForStatus("Completed"));
  frame();
  EXPECT_EQ(text("trgTotalCount"), QStringLiteral("3"));
}

TEST_F(ARun, StopsByTheButton) {
  writeAlbum();
  holdCopies();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(isExecuting());
  EXPECT_TRUE(isEnabled("buttonStop"));
  click("buttonStop");
  ASSERT_TRUE(eventually([this] { return !isEnabled("buttonStop"); }));
  letGo();
  ASSERT_TRUE(waitForStatus("Stopped"));
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Start"));
  EXPECT_EQ(begun, 1);
}

TEST_F(ARun, KeepsTheProgramFromEnding) {
  writeAlbum();
  holdCopies();
  openWithFolders();
  alerts->answer = AlertPanel::firstButtonReturn;
  click("buttonStart");
  ASSERT_TRUE(isExecuting());
  EXPECT_FALSE(window->close());
  ASSERT_EQ(alerts->alerts.size(), 1U);
  EXPECT_EQ(alerts->alerts[0].informativeText,
            QStringLiteral("Please wait until process is finished or stop it before exit."));
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Paused"));
  EXPECT_FALSE(window->close()) << "a paused run counts";
  EXPECT_EQ(alerts->alerts.size(), 2U);
  click("buttonStart");
  letGo();
  EXPECT_TRUE(waitForStatus("Completed"));
}

TEST_F(ARun, NeedsNoPointer) {
  writeAlbum();
  open();
  const auto press = [this](int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window->focusWidget(), static_cast<Qt::Key>(key), modifiers);
  };
  folders->answer = folder / "in";
  press(Qt::Key_O, Qt::ControlModifier);
  folders->answer = folder / "out";
  press(Qt::Key_T, Qt::ControlModifier);
  press(Qt::Key_V, Qt::AltModifier);  // skip small videos
  press(Qt::Key_D, Qt::AltModifier);  // to the folders' names
  press(Qt::Key_End);
  press(Qt::Key_S, Qt::AltModifier);
  ASSERT_TRUE(waitForStatus("Completed"));
  ASSERT_TRUE(eventually([this] { return widget<QWidget>("buttonOpenTarget").isVisible(); }));
  press(Qt::Key_N, Qt::AltModifier);
  EXPECT_TRUE(eventually([this] { return workspace->addresses.size() == 1; }));
  EXPECT_TRUE(controls().chkFilterSmallVideos->state() == CheckBox::on);
  EXPECT_TRUE(std::filesystem::is_directory(folder / "out/2014/05/21"));
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(alerts->alerts.size(), 1U);
}

}  // namespace

}  // namespace kestrova::test
