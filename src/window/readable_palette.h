#pragma once

#include <QPalette>

namespace kestrova {

/// The contrast of two opaque colours, 1 to 21 (WCAG 2.1, "contrast ratio").
double contrastRatio(const QColor& one, const QColor& other);

/// Those colours of a palette that have to change so that every text of an enabled widget stands out from
/// what it is written on by 4.5:1; all others are left to whoever the palette came from.
QPalette readableColors(const QPalette& palette);

}  // namespace kestrova
