#include "scan/content_fingerprint.h"

#include <QCryptographicHash>

namespace kestrova {

std::string contentFingerprint(const std::optional<Bytes>& prefix) {
  QCryptographicHash md5(QCryptographicHash::Md5);
  if (prefix) md5.addData(QByteArrayView(prefix->data(), static_cast<qsizetype>(prefix->size())));
  return md5.result().toHex().toStdString();
}

Fingerprint readFingerprint(const FileManager& files, const Path& path) {
  const auto start = files.readPrefix(path, prefixLength);
  if (!start) return {.digits = contentFingerprint(std::nullopt), .readError = start.error().message};
  return {.digits = contentFingerprint(*start)};
}

}  // namespace kestrova
