#include "scan/content_fingerprint.h"

#include "app/organise_manager.h"

#include <QCryptographicHash>

namespace kestrova {

std::string contentFingerprint(const std::optional<Bytes>& prefix) {
  const Bytes bytes = prefix.value_or(Bytes());
  const auto text = QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size()));
  return QCryptographicHash::hash(text.toByteArray(), QCryptographicHash::Md5).toHex().toStdString();
}

// The name is older than the count.
std::optional<Bytes> OrganiseManager::read10KFromFile(const Path& path) const {
  return host_.files->readPrefix(path, prefixLength);
}

std::string OrganiseManager::hashData(const std::optional<Bytes>& data) const {
  return contentFingerprint(data);
}

}  // namespace kestrova
