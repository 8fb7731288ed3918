#include "window/source_list.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

namespace kestrova {

void SourceList::setPlaceholderText(const QString& text) {
  placeholderText_ = text;
  viewport()->update();
}

void SourceList::setRows(const QStringList& rows) {
  const int current = currentRow();
  clear();
  for (const QString& row : rows) {
    auto* item = new QListWidgetItem(row, this);
    item->setToolTip(row);
  }
  setCurrentRow(std::min(current, count() - 1), QItemSelectionModel::NoUpdate);
}

std::set<std::size_t> SourceList::selectedRows() const {
  std::set<std::size_t> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) {
    rows.insert(static_cast<std::size_t>(index.row()));
  }
  return rows;
}

void SourceList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
    Q_EMIT removeRequested();
  else
    QListWidget::keyPressEvent(event);
}

void SourceList::paintEvent(QPaintEvent* event) {
  QListWidget::paintEvent(event);
  if (count() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, placeholderText_);
}

}  // namespace kestrova
