#pragma once

#include "imaging/base/turn.h"

#include <QImage>
#include <QTransform>

namespace kestrova {

/// The bitmap turned, whole pixels moved.
inline QImage turned(const QImage& bitmap, const imaging::Turn& turn) {
  // A clockwise quarter turn of what is upside down exchanges the axes.
  const QImage mirrored = bitmap.mirrored(turn.mirrorX, turn.mirrorY != turn.transpose);
  return turn.transpose ? mirrored.transformed(QTransform().rotate(90)) : mirrored;
}

}  // namespace kestrova
