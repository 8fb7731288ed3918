#include "app/organise_manager.h"
#include "platform/main_queue.h"

namespace kestrova {

OrganiseManager::OrganiseManager(Host host) : host_(std::move(host)) {
  post([this] { loadSettings(); });
}

// Workers stop before the fields that they use go.
OrganiseManager::~OrganiseManager() { processQueue.reset(); }

void OrganiseManager::post(std::function<void()> block) {
  postToMainQueue([alive = std::weak_ptr(alive_), block = std::move(block)] {
    if (!alive.expired()) block();
  });
}

void OrganiseManager::setStatus(const QString& text) {
  post([this, text] { lblStatus->setStringValue(text); });
}

QString OrganiseManager::getMilliseconds() const {
  const Date now = host_.now();
  const double sinceEpoch = static_cast<double>(now.seconds) + now.nanoseconds * 1e-9;
  return QString::number(static_cast<qint64>(sinceEpoch * 1000.0));
}

}  // namespace kestrova
