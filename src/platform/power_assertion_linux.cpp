#include "platform/power_assertion.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace kestrova {

namespace {

constexpr int replyTimeout = 2000;  // milliseconds; a run waits no longer than this for a screen saver

QDBusMessage screenSaverCall(const QString& method, const QVariantList& arguments) {
  auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                             QStringLiteral("/org/freedesktop/ScreenSaver"),
                                             QStringLiteral("org.freedesktop.ScreenSaver"), method);
  call.setAutoStartService(false);
  call.setArguments(arguments);
  return call;
}

// The idle inhibition interface that desktops offer on the session bus; the identifier is its cookie.
class ScreenSaverAssertions : public PowerAssertions {
 public:
  std::optional<std::uint32_t> create(const QString& reason) override {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return std::nullopt;
    const auto reply =
        bus.call(screenSaverCall(QStringLiteral("Inhibit"), {QStringLiteral("Kestrova"), reason}),
                 QDBus::Block, replyTimeout);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return std::nullopt;
    return reply.arguments().first().toUInt();
  }

  void release(std::uint32_t identifier) override {
    auto bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) bus.send(screenSaverCall(QStringLiteral("UnInhibit"), {identifier}));
  }
};

}  // namespace

std::shared_ptr<PowerAssertions> systemPowerAssertions() { return std::make_shared<ScreenSaverAssertions>(); }

}  // namespace kestrova
