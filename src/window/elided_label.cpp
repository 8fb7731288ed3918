#include "window/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace kestrova {

void ElidedLabel::setPlaceholderText(const QString& text) {
  placeholderText_ = text;
  update();
}

QSize ElidedLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  const bool fits = fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), fits ? QString() : text(), this);
  return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool isEmpty = text().isEmpty();
  const QString shown =
      fontMetrics().elidedText(isEmpty ? placeholderText_ : text(), Qt::ElideMiddle, contentsRect().width());
  const auto alignment = QStyle::visualAlignment(layoutDirection(), this->alignment());
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment), palette(), isEnabled(), shown,
                        isEmpty ? QPalette::PlaceholderText : foregroundRole());
}

}  // namespace kestrova
