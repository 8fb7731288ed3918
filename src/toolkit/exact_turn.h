#pragma once

#include <QImage>
#include <QTransform>

namespace kestrova {

/// A turn that moves whole pixels: mirrored along the bitmap's own axes first, then the axes exchanged.
struct ExactTurn {
  bool mirrorX = false;
  bool mirrorY = false;
  bool transpose = false;
};

inline QImage turned(const QImage& bitmap, const ExactTurn& turn) {
  // A clockwise quarter turn of what is upside down exchanges the axes.
  const QImage mirrored = bitmap.mirrored(turn.mirrorX, turn.mirrorY != turn.transpose);
  return turn.transpose ? mirrored.transformed(QTransform().rotate(90)) : mirrored;
}

}  // namespace kestrova
