#include "support/headless_program.h"
#include "window_fixture.h"

#include <QProgressBar>
#include <QTimer>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <semaphore>
#include <thread>

#include <gmock/gmock.h>

namespace kestrova::test {

namespace {

class ARun : public WindowTest {
 protected:
  ~ARun() override { letGo(); }

  void writeAlbum() {
    writeFile(folder / "in/a.jpg", jpegPhoto({.seed = 1, .digitized = "2014:05:21 13:45:02"}));
    writeFile(folder / "in/again.jpg", jpegPhoto({.seed = 1, .digitized = "2014:05:21 13:45:02"}));
    writeFile(folder / "in/b.jpg", jpegPhoto({.seed = 2, .digitized = "2014:05:22 08:00:00"}));
    writeFile(folder / "in/c.mp4", videoFile(2'000'000, 3));
  }
  void openWithFolders() {
    open();
    addSource(folder / "in");
    setTarget(folder / "out");
  }
  /// Every copy waits for a permit.
  void holdCopies() {
    files->onStageCopy = [this](const Path&, const Path&) {
      ++begun;
      if (held) permits.acquire();
      return std::nullopt;
    };
  }
  void letGo() {
    held = false;
    permits.release(1000);
  }
  bool isExecuting() {
    return eventually([this] {
             return isEnabled("buttonStart") && title("buttonStart") == QStringLiteral("Pause");
           }) &&
           eventually([this] { return begun == 1; });
  }

  std::atomic<bool> held = true;
  std::atomic<int> begun = 0;
  std::counting_semaphore<> permits{0};
};

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

TEST_F(ARun, ShowsTheSearchInTheBarsPlaceWhileItLasts) {
  writeAlbum();
  std::binary_semaphore mayRead(0);
  std::atomic<bool> isHeld = true;
  files->onRead = [&](const Path&) {
    if (isHeld.exchange(false)) mayRead.acquire();
    return std::nullopt;
  };
  openWithFolders();
  click("buttonStart");
  EXPECT_TRUE(eventually([this] { return widget<QWidget>("sourceProgress").isVisible(); }));
  EXPECT_FALSE(widget<QWidget>("processBar").isVisible());
  EXPECT_EQ(widget<QProgressBar>("sourceProgress").maximum(), 0);
  EXPECT_TRUE(text("progressText").endsWith(QStringLiteral("found")));
  mayRead.release();
  ASSERT_TRUE(waitForStatus("Completed"));
  EXPECT_TRUE(widget<QWidget>("processBar").isVisible());
  EXPECT_FALSE(widget<QWidget>("sourceProgress").isVisible());
}

TEST_F(ARun, SaysNothingOfFilesBeforeItsSearchBegins) {
  openWithFolders();
  controls().manager.starttime = Date();
  controls().buttonStart->setTitle(QStringLiteral("Pause"));
  frame();
  EXPECT_EQ(text("progressText"), QString());
}

TEST_F(ARun, ThatFindsNothingSaysSo) {
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

TEST_F(ARun, ShowsItsShareInTheTitleAndTheTaskBar) {
  writeAlbum();
  holdCopies();
  openWithFolders();
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Kestrova"));
  click("buttonStart");
  ASSERT_TRUE(isExecuting());
  EXPECT_TRUE(eventually([this] { return window->windowTitle() == QStringLiteral("0% - Kestrova"); }));
  permits.release();
  EXPECT_TRUE(eventually([this] { return window->windowTitle() == QStringLiteral("33% - Kestrova"); }));
  EXPECT_EQ(desktop->shares.back(), 0.33);
  click("buttonStart");
  EXPECT_TRUE(
      eventually([this] { return window->windowTitle() == QStringLiteral("33% (paused) - Kestrova"); }));
  click("buttonStart");
  letGo();
  ASSERT_TRUE(waitForStatus("Completed"));
  EXPECT_TRUE(eventually([this] { return window->windowTitle() == QStringLiteral("Kestrova"); }));
  EXPECT_EQ(desktop->shares.back(), std::nullopt);
}

TEST_F(ARun, SaysHowLongItWillTakeOnceItCanJudge) {
  writeAlbum();
  holdCopies();
  openWithFolders();
  click("buttonStart");
  ASSERT_TRUE(isExecuting());
  QTest::qWait(3600);
  EXPECT_EQ(text("timeLeftText"), QString()) << "nothing is done yet";
  permits.release();
  EXPECT_TRUE(eventually([this] { return text("timeLeftText").endsWith(QStringLiteral("left")); }));
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Paused"));
  EXPECT_TRUE(eventually([this] { return text("timeLeftText").isEmpty(); }));
  click("buttonStart");
  letGo();
  ASSERT_TRUE(waitForStatus("Completed"));
  EXPECT_TRUE(eventually([this] { return text("timeLeftText").isEmpty(); }));
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
    if (from.filename() == "a.jpg") return FileError{EIO, "Input/output error"};
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
  QTest::qWait(700);
  EXPECT_FALSE(widget<QWidget>("remainderBox").isVisible());
}

TEST_F(ARun, OverThousandsOfFilesLeavesTheWindowAlive) {
  constexpr int count = 2000;
  for (std::size_t size = 1; size <= count; ++size) {
    writeFile(folder / "in" / (std::to_string(size) + ".jpg"), std::string(size, 'x'));
  }
  std::atomic<int> ticks = 0;
  std::atomic<int> asked = 0;
  files->onAttributes = [&](const Path&) {
    // Half-way the run waits for the window's timer, for which it would wait in vain if it held the window
    // up.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(patience / 2);
    for (++asked; asked == count / 2 && ticks < 10 && std::chrono::steady_clock::now() < deadline;) {
      std::this_thread::yield();
    }
    return std::nullopt;
  };
  openWithFolders();
  click("chkFilterSmallPhotos");
  QTimer ticker;
  QObject::connect(&ticker, &QTimer::timeout, [&] { ticks += asked > 0 && asked <= count / 2; });
  ticker.start(0);
  click("buttonStart");
  ASSERT_TRUE(waitForStatus("Completed"));
  EXPECT_GE(ticks, 10);
  EXPECT_GE(asked, count);
  EXPECT_EQ(text("trgFilteredCount"), QString::number(count));
}

}  // namespace

}  // namespace kestrova::test
