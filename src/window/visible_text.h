#pragma once

#include <QString>

namespace kestrova {

/// The text with its control characters replaced by their pictures (U+2400 and on), so that a file name with
/// a line break fits on one line.
inline QString visibleText(QString text) {
  for (QChar& c : text) {
    if (c.unicode() < 0x20) c = QChar(0x2400 + c.unicode());
    if (c.unicode() == 0x7f) c = QChar(0x2421);
  }
  return text;
}

}  // namespace kestrova
