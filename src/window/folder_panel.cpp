#include "window/folder_panel.h"

#include "window/folder_dialog.h"

namespace kestrova {

void WindowFolderPanel::beginSheetModalForWindow(Completion completion) {
  auto* dialog = new FolderDialog(window_);
  QObject::connect(dialog, &QFileDialog::finished, dialog,
                   [dialog, completion = std::move(completion)](int result) {
                     const auto folder = result == QDialog::Accepted ? dialog->folder() : std::nullopt;
                     completion(folder ? okResponse : 0, folder.value_or(Path()));
                   });
  dialog->open();
}

}  // namespace kestrova
