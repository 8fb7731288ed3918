#include "window/readable_palette.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrova {

namespace {

constexpr double enough = 4.5;
constexpr int steps = 50;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& from, const QColor& to, double share) {
  const auto channel = [share](float one, float other) {
    return static_cast<float>(one + (other - one) * share);
  };
  return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                          channel(from.blueF(), to.blueF()));
}

// As it looks on that background.
QColor opaque(const QColor& color, const QColor& ground) { return mixed(ground, color, color.alphaF()); }

// The first colour between one and the other with enough contrast to the third.
QColor readable(const QColor& color, const QColor& limit, const QColor& against) {
  for (int step = 0; step < steps; ++step) {
    const QColor tried = mixed(color, limit, double{1} * step / steps);
    if (contrastRatio(tried, against) >= enough) return tried;
  }
  return limit;
}

QColor farthestFrom(const QColor& color) {
  const QColor black(Qt::black);
  const QColor white(Qt::white);
  return contrastRatio(color, white) > contrastRatio(color, black) ? white : black;
}

struct Pair {
  QPalette::ColorRole text;
  QPalette::ColorRole ground;
};

constexpr std::array texts{Pair{QPalette::WindowText, QPalette::Window}, Pair{QPalette::Text, QPalette::Base},
                           Pair{QPalette::ButtonText, QPalette::Button},
                           Pair{QPalette::PlaceholderText, QPalette::Base},
                           Pair{QPalette::PlaceholderText, QPalette::Window}};

// One group of a palette's colours under repair.
struct Repair {
  QPalette::ColorGroup group;
  QPalette result;
  QPalette changes;

  void set(QPalette::ColorRole role, const QColor& color) {
    result.setColor(group, role, color);
    changes.setColor(group, role, color);
  }

  void repairText(Pair pair) {
    const QColor ground = result.color(group, pair.ground);
    const QColor text = opaque(result.color(group, pair.text), ground);
    if (contrastRatio(text, ground) < enough) set(pair.text, readable(text, farthestFrom(ground), ground));
  }

  // Here the background changes, as the text's colour was chosen for all backgrounds of its kind.
  void repairSelection() {
    const QColor ground = result.color(group, QPalette::Highlight);
    const QColor text = opaque(result.color(group, QPalette::HighlightedText), ground);
    if (contrastRatio(text, ground) < enough)
      set(QPalette::Highlight, readable(ground, farthestFrom(text), text));
  }
};

}  // namespace

double contrastRatio(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QPalette readableColors(const QPalette& palette) {
  QPalette changes;
  changes.setResolveMask(0);
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    Repair repair{group, palette, changes};
    for (const Pair pair : texts) repair.repairText(pair);
    repair.repairSelection();
    changes = repair.changes;
  }
  return changes;
}

}  // namespace kestrova
