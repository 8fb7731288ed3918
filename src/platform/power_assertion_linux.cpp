#include "platform/desktop_thread.h"
#include "platform/power_assertion.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <atomic>
#include <limits>
#include <map>
#include <utility>

namespace kestrova {

namespace {

/// Nobody waits for the reply, and an assertion that is granted late must be known, to be released.
constexpr int noTimeout = std::numeric_limits<int>::max();

QDBusMessage screenSaverCall(const QString& method, const QVariantList& arguments) {
  auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                             QStringLiteral("/org/freedesktop/ScreenSaver"),
                                             QStringLiteral("org.freedesktop.ScreenSaver"), method);
  call.setAutoStartService(false);
  call.setArguments(arguments);
  return call;
}

/// The idle inhibition interface that desktops offer on the session bus. It gives out a cookie for each
/// inhibition; these are kept under identifiers of our own, which exist before the desktop has answered.
/// Belongs to the desktop thread.
class Inhibitions {
 public:
  void begin(std::uint32_t identifier, const QString& reason) {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    const auto reply =
        bus.call(screenSaverCall(QStringLiteral("Inhibit"), {QStringLiteral("Kestrova"), reason}),
                 QDBus::Block, noTimeout);
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
      cookies_[identifier] = reply.arguments().constFirst().toUInt();
  }

  void end(std::uint32_t identifier) {
    const auto known = cookies_.find(identifier);
    if (known == cookies_.end()) return;
    const auto bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) bus.send(screenSaverCall(QStringLiteral("UnInhibit"), {known->second}));
    cookies_.erase(known);
  }

 private:
  std::map<std::uint32_t, std::uint32_t> cookies_;
};

class ScreenSaverAssertions : public PowerAssertions {
 public:
  std::optional<std::uint32_t> create(const QString& reason) override {
    const std::uint32_t identifier = ++last_;
    thread_.post([all = inhibitions_, identifier, reason] { all->begin(identifier, reason); });
    return identifier;
  }

  void release(std::uint32_t identifier) override {
    thread_.post([all = inhibitions_, identifier] { all->end(identifier); });
  }

 private:
  std::atomic<std::uint32_t> last_ = 0;
  std::shared_ptr<Inhibitions> inhibitions_ = std::make_shared<Inhibitions>();
  DesktopThread thread_;
};

}  // namespace

std::shared_ptr<PowerAssertions> systemPowerAssertions() { return std::make_shared<ScreenSaverAssertions>(); }

}  // namespace kestrova
