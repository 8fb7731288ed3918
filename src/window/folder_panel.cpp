#include "window/folder_panel.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>

namespace kestrova {

void WindowFolderPanel::beginSheetModalForWindow(Completion completion) {
  auto* panel = new QFileDialog(&window_, QCoreApplication::translate("FolderPanel", "Choose a folder"));
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setFileMode(QFileDialog::Directory);
  panel->setOption(QFileDialog::ShowDirsOnly);
  QObject::connect(
      panel, &QFileDialog::finished, panel, [panel, completion = std::move(completion)](int result) {
        const bool isChosen = result == QDialog::Accepted && !panel->selectedFiles().isEmpty();
        if (isChosen)
          completion(okResponse, QFile::encodeName(panel->selectedFiles().constFirst()).toStdString());
        else
          completion(0, {});
      });
  panel->open();  // modal for its window only, and returns at once
}

}  // namespace kestrova
