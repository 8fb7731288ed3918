#include "platform/power_assertion.h"

#include "window/eventually.h"

#include <QDBusConnection>
#include <QTest>

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
  /// Returns before the screen saver has answered, as that does so on this thread.
  std::uint32_t create() { return assertions->create(QStringLiteral("Kestrova Process")).value(); }

  ScreenSaver saver;
  QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("saver"));
  std::shared_ptr<PowerAssertions> assertions = systemPowerAssertions();
};

}  // namespace

TEST_F(PowerAssertionsTest, TellTheScreenSaverWhoKeepsTheDisplayAwakeAndWhy) {
  startScreenSaver();
  create();
  ASSERT_TRUE(eventually([this] { return !saver.inhibitions.isEmpty(); }));
  EXPECT_EQ(saver.inhibitions, QStringList(QStringLiteral("Kestrova|Kestrova Process")));
}

TEST_F(PowerAssertionsTest, AreReleasedByTheirCookie) {
  startScreenSaver();
  const std::uint32_t identifier = create();
  ASSERT_TRUE(eventually([this] { return !saver.inhibitions.isEmpty(); }));
  assertions->release(identifier);
  ASSERT_TRUE(eventually([this] { return !saver.released.isEmpty(); }));
  EXPECT_EQ(saver.released, QList<uint>{7});
}

TEST_F(PowerAssertionsTest, AreReleasedAlsoWhenTheyAreGrantedAfterTheirRunHasEnded) {
  startScreenSaver();
  assertions->release(create());
  EXPECT_TRUE(saver.inhibitions.isEmpty());
  ASSERT_TRUE(eventually([this] { return !saver.released.isEmpty(); }));
  EXPECT_EQ(saver.released, QList<uint>{7});
}

TEST_F(PowerAssertionsTest, AreNoErrorWithoutAScreenSaver) {
  const std::uint32_t identifier = create();
  assertions->release(identifier);
  assertions->release(identifier + 1);
  startScreenSaver();
  create();
  ASSERT_TRUE(eventually([this] { return !saver.inhibitions.isEmpty(); }));
  EXPECT_TRUE(saver.released.isEmpty());
}

}  // namespace kestrova::test

#include "power_assertion_test.moc"
