#include "run_fixture.h"

#include <QProgressBar>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <semaphore>
#include <string>
#include <thread>

// What the window shows while a run lasts.

namespace kestrova::test {

namespace {

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
  constexpr int longEnoughToJudge = 3600;  // milliseconds
  QTest::qWait(longEnoughToJudge);
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

TEST_F(ARun, OverThousandsOfFilesLeavesTheWindowAlive) {
  constexpr int count = 2000;
  constexpr int enoughTicks = 10;
  for (std::size_t size = 1; size <= count; ++size) {
    writeFile(folder / "in" / (std::to_string(size) + ".jpg"), std::string(size, 'x'));
  }
  std::atomic<int> ticks = 0;
  std::atomic<int> asked = 0;
  files->onAttributes = [&](const Path&) {
    // Half-way the run waits for the window's timer. It would wait in vain if it blocked the window.
    const auto deadline = std::chrono::steady_clock::now() + patience / 2;
    for (++asked; asked == count / 2 && ticks < enoughTicks && std::chrono::steady_clock::now() < deadline;) {
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
  EXPECT_GE(ticks, enoughTicks);
  EXPECT_GE(asked, count);
  EXPECT_EQ(text("trgFilteredCount"), QString::number(count));
}

}  // namespace

}  // namespace kestrova::test
