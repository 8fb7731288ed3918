#include "window/dropped_folders.h"

#include "platform/file_url.h"

#include <QMimeData>
#include <string_view>

namespace kestrova {

namespace {

Path withoutClosingSlashes(const Path& path) {
  std::string bytes = path.native();
  while (bytes.size() > 1 && bytes.back() == '/') bytes.pop_back();
  return bytes;
}

}  // namespace

// The list is read as bytes: a URL type would pass the names through a text codec.
std::vector<Path> foldersIn(const QMimeData& dragged) {
  std::vector<Path> folders;
  for (const QByteArray& line : dragged.data(QStringLiteral("text/uri-list")).split('\n')) {
    const QByteArray url = line.trimmed();
    const auto path = pathOfFileUrl({url.constData(), static_cast<std::size_t>(url.size())});
    std::error_code ignored;
    if (path && std::filesystem::is_directory(*path, ignored))
      folders.push_back(withoutClosingSlashes(*path));
  }
  return folders;
}

}  // namespace kestrova
