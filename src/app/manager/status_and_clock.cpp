#include "app/organise_manager.h"
#include "platform/main_queue.h"

namespace kestrova {

OrganiseManager::OrganiseManager(Host host) : host_(std::move(host)) {
  post([this] { loadSettings(); });
}

// Workers end before the fields that they use are destroyed, including the queue itself.
OrganiseManager::~OrganiseManager() {
  if (processQueue) processQueue->close();
}

void OrganiseManager::post(std::function<void()> block) {
  postToMainQueue([alive = std::weak_ptr(alive_), block = std::move(block)] {
    if (!alive.expired()) block();
  });
}

void OrganiseManager::postFrom(const InvocationOperation& stage, std::function<void()> block) {
  post([stage = stage.shared_from_this(), block = std::move(block)] {
    if (!stage->isCancelled()) block();
  });
}

void OrganiseManager::setStatus(const QString& text) { statusLine_.show(text); }

QString OrganiseManager::getMilliseconds() const {
  const Date now = host_.now();
  const double sinceEpoch = static_cast<double>(now.seconds) + now.nanoseconds * 1e-9;
  return QString::number(static_cast<qint64>(sinceEpoch * 1000.0));
}

}  // namespace kestrova
