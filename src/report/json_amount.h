#pragma once

#include "model/amount.h"

#include <QJsonObject>

namespace kestrova::report {

/// {"files":n,"bytes":n}
inline QJsonObject jsonOf(const Amount& amount) {
  return {{QStringLiteral("files"), static_cast<qint64>(amount.files)},
          {QStringLiteral("bytes"), static_cast<qint64>(amount.bytes)}};
}

/// The same back.
inline Amount amountOf(const QJsonObject& object) {
  return {object.value(QStringLiteral("files")).toInteger(),
          object.value(QStringLiteral("bytes")).toInteger()};
}

}  // namespace kestrova::report
