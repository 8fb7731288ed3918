#pragma once

#include <QWidget>

namespace kestrova {

/// Lies over a part of its window while folders are dragged there, and says what a drop would do. The
/// pointer does not meet it.
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
