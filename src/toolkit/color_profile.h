#pragma once

#include "platform/bytes.h"

#include <QByteArray>
#include <QColorSpace>

namespace kestrova {

/// The colour space of an ICC profile; none when the profile is empty, or of a kind that Qt does not know.
inline QColorSpace colorSpaceFrom(ByteView profile) {
  if (profile.empty()) return {};
  return QColorSpace::fromIccProfile(
      QByteArray(reinterpret_cast<const char*>(profile.data()), static_cast<qsizetype>(profile.size())));
}

}  // namespace kestrova
