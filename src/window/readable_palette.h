#pragma once

#include <QPalette>

namespace kestrova {

/// The contrast of two opaque colours, 1 to 21 (WCAG 2.1, "contrast ratio").
double contrastRatio(const QColor& one, const QColor& other);

/// The colours of a palette that have to change so that every text of an enabled widget has a contrast of at
/// least 4.5:1 with its background; all others stay.
QPalette readableColors(const QPalette& palette);

}  // namespace kestrova
