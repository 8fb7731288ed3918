#pragma once

#include "platform/file_manager.h"

#include <QJsonArray>
#include <QString>
#include <string>
#include <vector>

namespace kestrova::report {

/// A file or folder, and why something could not be done with it.
struct PathReason {
  Path path;
  std::string reason = {};  ///< in English, in UTF-8
};

/// An array of objects with the path under `key`, as putPath of json_path.h does, and the reason.
QJsonArray jsonOf(const std::vector<PathReason>& list, const QString& key);

}  // namespace kestrova::report
