#pragma once

#include <QWidget>

namespace kestrova {

/// Covers a part of its window while folders are dragged over it, and says what a drop would do. Mouse events
/// pass through it.
class DropHighlight : public QWidget {
  Q_OBJECT

 public:
  explicit DropHighlight(QWidget& window);

  void showOver(const QWidget& place, const QString& promise);
  const QString& promise() const { return promise_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString promise_;
};

}  // namespace kestrova
