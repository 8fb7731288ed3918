#include "window/alert_panel.h"

#include "window/shown_text.h"

#include <QMessageBox>
#include <QPushButton>

namespace kestrova {

namespace {

// The first button confirms, the others do not; each desktop has its own places for them.
QList<QAbstractButton*> addButtons(QMessageBox& box, const QStringList& titles) {
  QList<QAbstractButton*> buttons;
  for (const QString& title : titles) {
    buttons << box.addButton(shownText(title),
                             buttons.isEmpty() ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
  }
  box.setDefaultButton(static_cast<QPushButton*>(buttons.constFirst()));
  box.setEscapeButton(buttons.constLast());
  return buttons;
}

}  // namespace

int WindowAlertPanel::runModal(const Alert& alert) {
  QMessageBox box(&window_);
  box.setWindowTitle(QStringLiteral("Kestrova"));
  box.setIcon(QMessageBox::Warning);
  box.setTextFormat(Qt::PlainText);
  box.setText(shownText(alert.messageText));
  box.setInformativeText(shownText(alert.informativeText));
  const auto buttons = addButtons(box, alert.buttons);
  box.exec();
  const auto index = buttons.indexOf(box.clickedButton());
  return firstButtonReturn + static_cast<int>(index >= 0 ? index : buttons.size() - 1);
}

}  // namespace kestrova
