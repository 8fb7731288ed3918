#include "window/drop_highlight.h"

#include <QPainter>

namespace kestrova {

namespace {

constexpr int margin = 6;  // pixels around the covered widget
constexpr int frameWidth = 2;
constexpr int cornerRadius = 6;

}  // namespace

DropHighlight::DropHighlight(QWidget& window) : QWidget(&window) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAccessibleName(tr("What a drop does"));
  hide();
}

void DropHighlight::showOver(const QWidget& place, const QString& promise) {
  promise_ = promise;
  setAccessibleDescription(promise);
  const QRect area(place.mapTo(parentWidget(), QPoint()), place.size());
  setGeometry(area.adjusted(-margin, -margin, margin, margin));
  raise();
  show();
  update();
}

void DropHighlight::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(palette().base());
  painter.setPen(QPen(palette().color(QPalette::Highlight), frameWidth));
  painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, promise_);
}

}  // namespace kestrova
