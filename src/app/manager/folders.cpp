#include "app/organise_manager.h"
#include "platform/log.h"

#include <algorithm>

namespace kestrova {

namespace {

void choose(const Host& host, const std::weak_ptr<bool>& alive, std::function<void(const Path&)> chosen) {
  if (!host.folderPanel) return;
  host.folderPanel->beginSheetModalForWindow(
      [alive, chosen = std::move(chosen)](int result, const Path& folder) {
        if (result == FolderPanel::okResponse && !alive.expired()) chosen(folder);
      });
}

}  // namespace

void OrganiseManager::chooseSourcePath(const Control*) {
  choose(host_, alive_, [this](const Path& folder) { addSource(folder); });
}

void OrganiseManager::chooseTargetPath(const Control*) {
  choose(host_, alive_, [this](const Path& folder) { setTarget(folder); });
}

void OrganiseManager::addSource(const Path& folder) {
  sourcePath = folder;
  auto folders = sourcePathList.get();
  const bool isListed = std::any_of(folders.begin(), folders.end(),
                                    [&](const Path& listed) { return listed.native() == folder.native(); });
  if (!isListed) {
    folders.push_back(folder);
    sourcePathList = std::move(folders);
  }
  sourceList->reloadData();
  saveSettings();
}

void OrganiseManager::setTarget(const Path& folder) {
  targetPath = folder;
  lblTargetPath->setStringValue(displayPath(folder));
  saveSettings();
}

void OrganiseManager::deleteSource(const Control*) {
  const auto rows = sourceList->selectedRowIndexes();
  const auto folders = sourcePathList.get();
  std::vector<Path> kept;
  for (std::size_t row = 0; row < folders.size(); ++row) {
    if (!rows.contains(row)) kept.push_back(folders[row]);
  }
  sourcePathList = std::move(kept);
  sourceList->reloadData();
  saveSettings();
}

std::size_t OrganiseManager::numberOfRowsInTableView(const TableView&) const {
  return sourcePathList.get().size();
}

QString OrganiseManager::tableView(const TableView&, int /*objectValueForTableColumn*/,
                                   std::size_t row) const {
  return displayPath(sourcePathList.get().at(row));
}

}  // namespace kestrova
