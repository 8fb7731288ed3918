#include "platform/desktop_status.h"
#include "platform/desktop_thread.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>

namespace kestrova {

namespace {

constexpr int desktopsOwnTime = -1;  // how long a message stays

// Task bars know the program by its desktop file.
QVariant launcher() {
  return QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName());
}

// The launcher interface that most task bars understand, and the desktop notifications of freedesktop.org.
class SessionBusStatus : public DesktopStatus {
 public:
  void showProgress(std::optional<double> share) override {
    auto update = QDBusMessage::createSignal(QStringLiteral("/example/kestrova/Kestrova"),
                                             QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                             QStringLiteral("Update"));
    const QVariantMap properties{{QStringLiteral("progress"), share.value_or(0.0)},
                                 {QStringLiteral("progress-visible"), share.has_value()}};
    update.setArguments({launcher(), properties});
    send(update);
  }

  void notify(const QString& title, const QString& text) override {
    const auto service = QStringLiteral("org.freedesktop.Notifications");
    auto call = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                               service, QStringLiteral("Notify"));
    const QString desktopFile = QGuiApplication::desktopFileName();
    const QVariantMap hints{{QStringLiteral("desktop-entry"), desktopFile}};
    const uint replacesNone = 0;
    call.setArguments({QStringLiteral("Kestrova"), replacesNone, desktopFile, title, text.toHtmlEscaped(),
                       QStringList(), hints, desktopsOwnTime});
    send(call);
  }

 private:
  void send(const QDBusMessage& message) {
    thread_.post([message] {
      const auto bus = QDBusConnection::sessionBus();
      if (bus.isConnected()) bus.send(message);
    });
  }

  DesktopThread thread_;
};

}  // namespace

std::shared_ptr<DesktopStatus> systemDesktopStatus() { return std::make_shared<SessionBusStatus>(); }

}  // namespace kestrova
