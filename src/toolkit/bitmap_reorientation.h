#pragma once

#include "imaging/base/reorientation.h"

#include <QImage>
#include <QTransform>

namespace kestrova {

/// The bitmap turned, whole pixels moved.
inline QImage reoriented(const QImage& bitmap, const imaging::Reorientation& reorientation) {
  // A clockwise quarter turn of what is upside down exchanges the axes.
  const QImage mirrored =
      bitmap.mirrored(reorientation.mirrorX, reorientation.mirrorY != reorientation.transpose);
  return reorientation.transpose ? mirrored.transformed(QTransform().rotate(90)) : mirrored;
}

}  // namespace kestrova
