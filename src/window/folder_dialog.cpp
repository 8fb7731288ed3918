#include "window/folder_dialog.h"

#include "platform/file_url.h"
#include "platform/log.h"
#include "window/undecodable_folders.h"

#include <QCoreApplication>
#include <QFile>
#include <QGridLayout>
#include <QUrl>

namespace kestrova {

namespace {

bool isThere(const Path& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

/// The one folder that is shown by this name.
std::optional<Path> folderShownAs(const QString& name, const Path& parent) {
  std::optional<Path> found;
  std::error_code error;
  for (std::filesystem::directory_iterator at(parent, error), end; !error && at != end; at.increment(error)) {
    std::error_code ignored;
    if (displayPath(at->path().filename()) != name || !at->is_directory(ignored)) continue;
    if (found) return std::nullopt;
    found = at->path();
  }
  return found;
}

}  // namespace

std::optional<Path> folderOfUrl(const QUrl& url) {
  const QByteArray encoded = url.toEncoded();
  const auto shown = pathOfFileUrl({encoded.constData(), static_cast<std::size_t>(encoded.size())});
  if (!shown || isThere(*shown)) return shown;
  Path folder = shown->root_path();
  for (const Path& name : shown->relative_path()) {
    const auto next =
        isThere(folder / name) ? std::optional(folder / name) : folderShownAs(displayPath(name), folder);
    if (!next) return std::nullopt;
    folder = *next;
  }
  return folder;
}

FolderDialog::FolderDialog(QWidget& window)
    : QFileDialog(&window, QCoreApplication::translate("FolderPanel", "Choose a folder")) {
  setAttribute(Qt::WA_DeleteOnClose);
  setFileMode(QFileDialog::Directory);
  setOption(QFileDialog::ShowDirsOnly);
}

void FolderDialog::open() {
  QDialog::open();  // modal for its window only
  addUndecodableFolders();
}

// The desktop's chooser has no layout of ours.
void FolderDialog::addUndecodableFolders() {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  if (grid == nullptr) return;
  undecodable_ = new UndecodableFolders(this);
  grid->addWidget(undecodable_, grid->rowCount(), 0, 1, grid->columnCount());
  const auto show = [this](const QString& folder) {
    undecodable_->showThoseOf(QFile::encodeName(folder).toStdString());
  };
  connect(this, &QFileDialog::directoryEntered, undecodable_, show);
  connect(this, &QFileDialog::currentChanged, undecodable_, [this] { undecodable_->clearSelection(); });
  connect(undecodable_, &QTreeWidget::itemActivated, this, [this] { accept(); });
  show(directory().absolutePath());
}

void FolderDialog::accept() {
  if (undecodable_ != nullptr && undecodable_->selectedFolder())
    QDialog::accept();
  else
    QFileDialog::accept();
}

std::optional<Path> FolderDialog::folder() const {
  if (undecodable_ != nullptr) {
    if (auto selected = undecodable_->selectedFolder()) return selected;
  }
  const auto urls = selectedUrls();
  return urls.isEmpty() ? std::nullopt : folderOfUrl(urls.constFirst());
}

}  // namespace kestrova
