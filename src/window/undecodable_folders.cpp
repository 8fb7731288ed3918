#include "window/undecodable_folders.h"

#include "platform/log.h"
#include "window/visible_text.h"

#include <QCoreApplication>
#include <QFile>
#include <algorithm>
#include <vector>

namespace kestrova {

namespace {

constexpr int rowsShown = 4;
constexpr int bytesOfPath = Qt::UserRole;

std::vector<Path> foldersOf(const Path& folder) {
  std::vector<Path> folders;
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::error_code ignored;
    if (at->is_directory(ignored)) folders.push_back(at->path());
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

bool isDecodable(const Path& name) {
  const QByteArray bytes = QByteArray::fromStdString(name.native());
  return QFile::encodeName(QFile::decodeName(bytes)) == bytes;
}

Path pathOf(const QTreeWidgetItem& row) { return row.data(0, bytesOfPath).toByteArray().toStdString(); }

QTreeWidgetItem* rowFor(const Path& folder) {
  auto* row = new QTreeWidgetItem({visibleText(displayPath(folder.filename()))});
  row->setData(0, bytesOfPath, QByteArray::fromStdString(folder.native()));
  row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
  return row;
}

void addRowsBelow(QTreeWidgetItem& row) {
  if (row.childCount() > 0) return;
  for (const Path& folder : foldersOf(pathOf(row))) row.addChild(rowFor(folder));
  row.setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

}  // namespace

UndecodableFolders::UndecodableFolders(QWidget* parent) : QTreeWidget(parent) {
  setHeaderLabel(QCoreApplication::translate("FolderPanel", "Folders whose names are not valid text"));
  setAccessibleName(headerItem()->text(0));
  setFixedHeight(rowsShown * 2 * fontMetrics().height());
  connect(this, &QTreeWidget::itemExpanded, this, [](QTreeWidgetItem* row) { addRowsBelow(*row); });
}

void UndecodableFolders::showThoseOf(const Path& folder) {
  clear();
  for (const Path& inside : foldersOf(folder)) {
    if (!isDecodable(inside.filename())) addTopLevelItem(rowFor(inside));
  }
  setVisible(topLevelItemCount() > 0);
}

std::optional<Path> UndecodableFolders::selectedFolder() const {
  const auto rows = selectedItems();
  return rows.isEmpty() ? std::nullopt : std::optional(pathOf(*rows.constFirst()));
}

}  // namespace kestrova
