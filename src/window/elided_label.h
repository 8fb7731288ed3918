#pragma once

#include <QLabel>

namespace kestrova {

/// One line of text that never widens the window: what does not fit is left out in the middle, and the tool
/// tip shows it all. Without a text it shows its placeholder.
class ElidedLabel : public QLabel {
  Q_OBJECT
  Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

 public:
  using QLabel::QLabel;

  const QString& placeholderText() const { return placeholderText_; }
  void setPlaceholderText(const QString& text);

  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString placeholderText_;
};

}  // namespace kestrova
