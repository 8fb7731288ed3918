#include "app/organise_manager.h"
#include "model/size_text.h"
#include "platform/log.h"
#include "report/verdict_row.h"
#include "scan/media_classification.h"

namespace kestrova {

namespace {

using Manager = OrganiseManager;

/// The number and total size of one kind of files, and the labels that show them.
struct Row {
  Counter Manager::*files;
  Counter Manager::*bytes;
  Outlet<TextField> Manager::*filesLabel;
  Outlet<TextField> Manager::*bytesLabel;
};

constexpr Row foundPhotos{&Manager::sPhotoCount, &Manager::sPhotoSize, &Manager::lblPhotoCount,
                          &Manager::lblPhotoSize};
constexpr Row foundVideos{&Manager::sVideoCount, &Manager::sVideoSize, &Manager::lblVideoCount,
                          &Manager::lblVideoSize};
constexpr Row found{&Manager::sTotalCount, &Manager::sTotalSize, &Manager::lblTotalCount,
                    &Manager::lblTotalSize};
constexpr Row duplicates{&Manager::sDuplicateCount, &Manager::sDuplicateSize, &Manager::lblDuplicateCount,
                         &Manager::lblDuplicateSize};
constexpr Row copiedPhotos{&Manager::tPhotoCount, &Manager::tPhotoSize, &Manager::trgPhotoCount,
                           &Manager::trgPhotoSize};
constexpr Row copiedVideos{&Manager::tVideoCount, &Manager::tVideoSize, &Manager::trgVideoCount,
                           &Manager::trgVideoSize};
constexpr Row rewritten{&Manager::tRotatedCount, &Manager::tRotatedSize, &Manager::trgRotatedCount,
                        &Manager::trgRotatedSize};
constexpr Row written{&Manager::tTotalCount, &Manager::tTotalSize, &Manager::trgTotalCount,
                      &Manager::trgTotalSize};
constexpr Row already{&Manager::tAlreadyCount, &Manager::tAlreadySize, &Manager::trgExistCount,
                      &Manager::trgExistSize};
constexpr Row filtered{&Manager::tFilteredCount, &Manager::tFilteredSize, &Manager::trgFilteredCount,
                       &Manager::trgFilteredSize};

/// What one block shows.
struct RowGroup {
  std::array<const Row*, 3> rows{};
  bool movesBar = false;
};

/// In the order of OrganiseManager::Rows.
constexpr std::array rowGroupTable{
    RowGroup{.rows = {&foundPhotos, &foundVideos, &found}},
    RowGroup{.rows = {&duplicates}},
    RowGroup{.rows = {&copiedPhotos}},
    RowGroup{.rows = {&copiedVideos}},
    RowGroup{.rows = {&written}, .movesBar = true},
    RowGroup{.rows = {&rewritten, &written}, .movesBar = true},
    RowGroup{.rows = {&already}, .movesBar = true},
    RowGroup{.rows = {&filtered}, .movesBar = true},
};

void raise(Manager& manager, const Row& row, std::uint64_t size) {
  manager.*row.files += 1;
  manager.*row.bytes += static_cast<std::int64_t>(size);
}

}  // namespace

void OrganiseManager::settle(Verdict verdict) {
  verdict.createdFolders = folderMaker_.takeCreated();
  count(verdict);
  if (verdictListener) verdictListener(verdict);
  if (recorder_ || (rowListener && listensToFileRows)) tellRow(report::rowOf(std::move(verdict), runTarget_));
}

void OrganiseManager::count(const Verdict& verdict) {
  const std::string_view from = extensionOfPath(verdict.source);
  const std::string_view to = verdict.target ? extensionOfPath(*verdict.target) : std::string_view();
  switch (verdict.counted()) {
    case Outcome::copied:
      increaseTargetCount(to, verdict.sourceSize);
      break;
    case Outcome::resized:
    case Outcome::rewritten:
      increaseRotateCount(to, verdict.targetSize.value_or(0));
      break;
    case Outcome::duplicate:
      increaseSourceDuplicate(from, verdict.sourceSize);
      break;
    case Outcome::small:
      increaseFilteredPhoto(from, verdict.sourceSize);
      break;
    case Outcome::exists:
      increaseTargetAlready(to, verdict.sourceSize);
      break;
    case Outcome::nameTaken:
      countExisting();
      break;
    case Outcome::sameContent:
    case Outcome::failed:
    case Outcome::unreadable:
    case Outcome::notReached:
      break;
  }
}

void OrganiseManager::increaseSourceCount(std::string_view extension, std::uint64_t size) {
  if (isPhoto(extension)) raise(*this, foundPhotos, size);
  if (isVideo(extension)) raise(*this, foundVideos, size);
  sTotalCount = sPhotoCount + sVideoCount;
  sTotalSize = sPhotoSize + sVideoSize;
  showSourceLabels();
}

void OrganiseManager::increaseSourceDuplicate(std::string_view, std::uint64_t size) {
  raise(*this, duplicates, size);
  refresh(Rows::duplicates);
}

void OrganiseManager::increaseTargetCount(std::string_view extension, std::uint64_t size) {
  const bool photo = isPhoto(extension);
  const bool video = isVideo(extension);
  if (photo) raise(*this, copiedPhotos, size);
  if (video) raise(*this, copiedVideos, size);
  updateTargetTotals();
  if (photo) refresh(Rows::copiedPhotos);
  if (video) refresh(Rows::copiedVideos);
  refresh(Rows::written);
}

void OrganiseManager::increaseRotateCount(std::string_view, std::uint64_t size) {
  raise(*this, rewritten, size);
  updateTargetTotals();
  refresh(Rows::rewritten);
}

void OrganiseManager::increaseTargetAlready(std::string_view, std::uint64_t size) {
  raise(*this, already, size);
  refresh(Rows::already);
}

void OrganiseManager::increaseFilteredPhoto(std::string_view, std::uint64_t size) {
  raise(*this, filtered, size);
  refresh(Rows::filtered);
}

void OrganiseManager::countExisting() {
  targetExistCount += 1;
  post([this] { lblTargetExistCount->setStringValue(countText(targetExistCount)); });
}

void OrganiseManager::updateTargetTotals() {
  tTotalCount = tPhotoCount + tVideoCount + tRotatedCount;
  tTotalSize = tPhotoSize + tVideoSize + tRotatedSize;
}

void OrganiseManager::showSourceLabels() { refresh(Rows::found); }

void OrganiseManager::showSourceLabelsTimer() {
  log(QStringLiteral("Timer"));
  showSourceLabels();
}

// The exchanges order the counters with the flag: a block that finds another one pending leaves its counters
// to it.
void OrganiseManager::refresh(Rows rows) {
  auto& pending = refreshPending_.at(static_cast<std::size_t>(rows));
  if (pending.exchange(true)) return;
  post([this, &pending, rows] {
    pending.exchange(false);
    show(rows);
  });
}

void OrganiseManager::forgetPendingRefreshes() {
  for (auto& pending : refreshPending_) pending = false;
}

void OrganiseManager::show(Rows rows) {
  static_assert(rowGroupTable.size() == rowGroups);
  const RowGroup& group = rowGroupTable.at(static_cast<std::size_t>(rows));
  for (const Row* row : group.rows) {
    if (row == nullptr) continue;
    (this->*row->filesLabel)->setStringValue(countText(this->*row->files));
    (this->*row->bytesLabel)->setStringValue(sizeText(this->*row->bytes));
  }
  if (group.movesBar) showProgress();
}

void OrganiseManager::showProgress() {
  processBar->setDoubleValue(static_cast<double>(tAlreadyCount + tTotalCount + tFilteredCount));
}

}  // namespace kestrova
