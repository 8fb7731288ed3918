#include "platform/power_assertion.h"

#include "window/eventually.h"

#include <QDBusConnection>
#include <QTest>
#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace kestrova::test {

namespace {

/// A desktop's screen saver: gives out cookies.
class ScreenSaver : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

 public Q_SLOTS:
  uint Inhibit(const QString& application, const QString& reason) {
    inhibitions << application + u'|' + reason;
    return 7;
  }
  void UnInhibit(uint cookie) { released << cookie; }

 public:
  QStringList inhibitions;
  QList<uint> released;
};

class PowerAssertionsTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!bus.isConnected()) GTEST_SKIP() << "there is no session bus";
  }
  ~PowerAssertionsTest() override { QDBusConnection::disconnectFromBus(QStringLiteral("saver")); }

  void startScreenSaver() {
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), &saver,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver")));
  }
  /// Creates an assertion on a worker, as a run does, while the screen saver answers on this thread.
  std::optional<std::uint32_t> create() {
    std::optional<std::uint32_t> identifier;
    std::atomic<bool> isDone = false;
    std::jthread worker([&] {
      identifier = assertions->create(QStringLiteral("Kestrova Process"));
      isDone = true;
    });
    EXPECT_TRUE(eventually([&] { return isDone.load(); }));
    worker.join();
    return identifier;
  }

  ScreenSaver saver;
  QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("saver"));
  std::shared_ptr<PowerAssertions> assertions = systemPowerAssertions();
};

}  // namespace

TEST_F(PowerAssertionsTest, TellTheScreenSaverWhoKeepsTheDisplayAwakeAndWhy) {
  startScreenSaver();
  EXPECT_EQ(create(), 7U);
  EXPECT_EQ(saver.inhibitions, QStringList(QStringLiteral("Kestrova|Kestrova Process")));
}

TEST_F(PowerAssertionsTest, AreReleasedByTheirCookie) {
  startScreenSaver();
  assertions->release(7);
  ASSERT_TRUE(eventually([this] { return !saver.released.isEmpty(); }));
  EXPECT_EQ(saver.released, QList<uint>{7});
}

TEST_F(PowerAssertionsTest, AreNoneWithoutAScreenSaverAndNoError) {
  EXPECT_EQ(create(), std::nullopt);
  EXPECT_NO_THROW(assertions->release(7));
}

}  // namespace kestrova::test

#include "power_assertion_test.moc"
