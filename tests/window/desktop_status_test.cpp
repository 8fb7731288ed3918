#include "platform/desktop_status.h"

#include "window/eventually.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QTest>
#include <QVariantMap>

#include <gtest/gtest.h>

namespace kestrova::test {

namespace {

/// A desktop: shows messages, and listens to the progress of programs.
class Desktop : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public Q_SLOTS:
  // The arguments of the interface, in their order.
  uint Notify(const QString& program, uint, const QString&, const QString& title, const QString& text,
              const QStringList&, const QVariantMap& hints, int) {
    messages << program + u'|' + title + u'|' + text + u'|' +
                    hints.value(QStringLiteral("desktop-entry")).toString();
    return 1;
  }
  void update(const QString& launcher, const QVariantMap& properties) {
    launchers << launcher;
    progress = properties;
  }

 public:
  QStringList messages;
  QStringList launchers;
  QVariantMap progress;
};

class DesktopStatusTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!bus.isConnected()) GTEST_SKIP() << "there is no session bus";
    QGuiApplication::setDesktopFileName(QStringLiteral("example.kestrova.Kestrova"));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &desktop,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.connect({}, {}, QStringLiteral("com.canonical.Unity.LauncherEntry"),
                            QStringLiteral("Update"), &desktop, SLOT(update(QString, QVariantMap))));
  }
  ~DesktopStatusTest() override {
    QDBusConnection::disconnectFromBus(QStringLiteral("desktop"));
    QGuiApplication::setDesktopFileName({});
  }

  Desktop desktop;
  QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("desktop"));
  std::shared_ptr<DesktopStatus> status = systemDesktopStatus();
};

TEST_F(DesktopStatusTest, ShowsAMessage) {
  status->notify(QStringLiteral("Completed"), QStringLiteral("3 < 4 files"));
  ASSERT_TRUE(eventually([this] { return !desktop.messages.isEmpty(); }));
  EXPECT_EQ(desktop.messages,
            QStringList(QStringLiteral("Kestrova|Completed|3 &lt; 4 files|example.kestrova.Kestrova")));
}

TEST_F(DesktopStatusTest, ShowsProgressAtTheProgramsPlaceInTheTaskBar) {
  status->showProgress(0.42);
  ASSERT_TRUE(eventually([this] { return !desktop.launchers.isEmpty(); }));
  EXPECT_EQ(desktop.launchers.back(), QStringLiteral("application://example.kestrova.Kestrova.desktop"));
  EXPECT_EQ(desktop.progress.value(QStringLiteral("progress")).toDouble(), 0.42);
  EXPECT_TRUE(desktop.progress.value(QStringLiteral("progress-visible")).toBool());
  status->showProgress(std::nullopt);
  ASSERT_TRUE(eventually([this] { return desktop.launchers.size() == 2; }));
  EXPECT_FALSE(desktop.progress.value(QStringLiteral("progress-visible")).toBool());
}

}  // namespace

}  // namespace kestrova::test

#include "desktop_status_test.moc"
