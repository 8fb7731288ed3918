#pragma once

#include <QListWidget>
#include <set>

namespace kestrova {

/// The list of source folders, one a row. When it is empty, it shows what to do.
class SourceList : public QListWidget {
  Q_OBJECT
  Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

 public:
  using QListWidget::QListWidget;

  const QString& placeholderText() const { return placeholderText_; }
  void setPlaceholderText(const QString& text);

  /// Shows these rows, none of them selected; the current row stays.
  void setRows(const QStringList& rows);
  std::set<std::size_t> selectedRows() const;

 Q_SIGNALS:
  /// The user asks to remove the selected rows by key.
  void removeRequested();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString placeholderText_;
};

}  // namespace kestrova
