#include "report/discard.h"

#include "platform/create_folders.h"
#include "platform/file_error.h"

#include <QFile>
#include <QStandardPaths>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace kestrova::report {

namespace {

/// Qt takes the current folder for the trash where it cannot create the user's own, so that has to be there
/// first, even for a file that goes into the trash of another volume.
FileResult<void> createTrashOfUser() {
  const QByteArray data =
      QFile::encodeName(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
  const Path folder(data.toStdString());
  if (auto created = createFolders(folder); !created) return created;
  const Path trash = folder / "Trash";
  if (::mkdir(trash.c_str(), 0700) < 0 && errno != EEXIST) return failure();
  return createFolders(trash / "files");
}

}  // namespace

FileResult<void> moveToTrash(const Path& file) {
  const auto bytes = QByteArray::fromStdString(file.native());
  const QString name = QString::fromUtf8(bytes);
  if (name.toUtf8() != bytes || QFile::encodeName(name) != bytes)
    return tl::make_unexpected(
        FileError{EILSEQ, "its name is not UTF-8, and the trash could not give it back"});
  if (const auto created = createTrashOfUser(); !created)
    return tl::make_unexpected(
        FileError{created.error().code, "there is no trash: " + created.error().message});
  QFile trashed(name);
  if (trashed.moveToTrash()) return {};
  return tl::make_unexpected(
      FileError{EIO, "cannot be moved to the trash: " + trashed.errorString().toStdString()});
}

FileResult<void> deleteFile(const Path& file) { return succeeded(::unlink(file.c_str())); }

}  // namespace kestrova::report
