#pragma once

#include "platform/file_manager.h"

#include <QJsonObject>
#include <QString>
#include <optional>

/// How a record holds values that JSON has no type for.
namespace kestrova::report {

/// Adds a path under `key`. A path that is not UTF-8 is lossy there; `key` followed by "Bytes" then holds its
/// bytes in base64.
void putPath(QJsonObject& object, const QString& key, const Path& path);

/// The exact path under `key`; nothing if there is none.
std::optional<Path> pathIn(const QJsonObject& object, const QString& key);

}  // namespace kestrova::report
