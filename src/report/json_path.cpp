#include "report/json_path.h"

#include <QByteArray>

namespace kestrova::report {

namespace {

QString bytesKey(const QString& key) { return key + QStringLiteral("Bytes"); }

}  // namespace

void putPath(QJsonObject& object, const QString& key, const Path& path) {
  const auto bytes = QByteArray::fromStdString(path.native());
  const QString text = QString::fromUtf8(bytes);
  object.insert(key, text);
  if (text.toUtf8() != bytes) object.insert(bytesKey(key), QString::fromLatin1(bytes.toBase64()));
}

std::optional<Path> pathIn(const QJsonObject& object, const QString& key) {
  const auto bytes = object.value(bytesKey(key));
  if (bytes.isString()) return Path(QByteArray::fromBase64(bytes.toString().toLatin1()).toStdString());
  const auto text = object.value(key);
  if (!text.isString()) return std::nullopt;
  return Path(text.toString().toUtf8().toStdString());
}

}  // namespace kestrova::report
