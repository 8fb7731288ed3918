#include "report/path_reason.h"

#include "report/json_path.h"

namespace kestrova::report {

QJsonArray jsonOf(const std::vector<PathReason>& list, const QString& key) {
  QJsonArray array;
  for (const auto& [path, reason] : list) {
    QJsonObject object{{QStringLiteral("reason"), QString::fromStdString(reason)}};
    putPath(object, key, path);
    array.append(object);
  }
  return array;
}

}  // namespace kestrova::report
