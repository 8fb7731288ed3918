#pragma once

#include <QString>
#include <cstdint>

namespace kestrova {

inline QString countText(std::int64_t count) { return QString::number(static_cast<quint64>(count)); }

/// A size in bytes as megabytes (2^20 bytes) with two decimals. Computed in single precision, so that very
/// large totals lose their last decimals.
inline QString sizeText(std::int64_t bytes) {
  const float megabytes = static_cast<float>(bytes) * (1.0F / 1048576.0F);
  return QString::asprintf("%.02f MB", static_cast<double>(megabytes));
}

}  // namespace kestrova
