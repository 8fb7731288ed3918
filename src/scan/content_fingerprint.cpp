#include "scan/content_fingerprint.h"

#include "app/organise_manager.h"

#include <QCryptographicHash>

namespace kestrova {

std::string contentFingerprint(const std::optional<Bytes>& prefix) {
  QCryptographicHash md5(QCryptographicHash::Md5);
  if (prefix) md5.addData(QByteArrayView(prefix->data(), static_cast<qsizetype>(prefix->size())));
  return md5.result().toHex().toStdString();
}

// The name is older than the count.
std::optional<Bytes> OrganiseManager::read10KFromFile(const Path& path) const {
  return host_.files->readPrefix(path, prefixLength);
}

std::string OrganiseManager::hashData(const std::optional<Bytes>& data) const {
  return contentFingerprint(data);
}

}  // namespace kestrova
