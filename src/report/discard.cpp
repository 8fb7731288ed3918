#include "report/discard.h"

#include "platform/file_error.h"

#include <QFile>
#include <cerrno>

#include <unistd.h>

namespace kestrova::report {

FileResult<void> moveToTrash(const Path& file) {
  const auto bytes = QByteArray::fromStdString(file.native());
  const QString name = QString::fromUtf8(bytes);
  if (name.toUtf8() != bytes || QFile::encodeName(name) != bytes)
    return tl::make_unexpected(FileError{EILSEQ, "its name is not UTF-8, which the trash cannot hold"});
  QFile trashed(name);
  if (trashed.moveToTrash()) return {};
  return tl::make_unexpected(
      FileError{EIO, "cannot be moved to the trash: " + trashed.errorString().toStdString()});
}

FileResult<void> deleteFile(const Path& file) { return succeeded(::unlink(file.c_str())); }

}  // namespace kestrova::report
