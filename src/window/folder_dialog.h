#pragma once

#include "platform/file_manager.h"

#include <QFileDialog>
#include <optional>

class QUrl;

namespace kestrova {

class UndecodableFolders;

/// The desktop's own folder chooser, or Qt's where there is none. Qt's shows no folder whose name is not
/// UTF-8: those of the folder that it shows have a list of their own below.
///
/// Without Q_OBJECT, as Qt shows the desktop's chooser for the class QFileDialog itself only.
class FolderDialog : public QFileDialog {
 public:
  explicit FolderDialog(QWidget& window);

  /// Shows the dialog and returns.
  void open() override;
  /// The chosen folder by its bytes, once the dialog has been accepted.
  std::optional<Path> folder() const;

  void accept() override;

 private:
  void addUndecodableFolders();

  UndecodableFolders* undecodable_ = nullptr;  ///< a child; none in the desktop's chooser
};

/// The folder that a chooser's answer means. Some choosers put U+FFFD for what they cannot decode of a name:
/// such a name stands for the one folder that is shown so. Nothing where there are several, or where the
/// answer is not on this host.
std::optional<Path> folderOfUrl(const QUrl& url);

}  // namespace kestrova
