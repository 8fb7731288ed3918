#include "app/organise_manager.h"
#include "model/size_text.h"
#include "platform/log.h"

namespace kestrova {

namespace {

void book(Counter& files, Counter& bytes, std::uint64_t size) {
  files += 1;
  bytes += static_cast<std::int64_t>(size);
}

void show(const Outlet<TextField>& filesLabel, const Outlet<TextField>& bytesLabel, std::int64_t files,
          std::int64_t bytes) {
  filesLabel->setStringValue(countText(files));
  bytesLabel->setStringValue(sizeText(bytes));
}

}  // namespace

void OrganiseManager::increaseSourceCount(const QString& extension, std::uint64_t size) {
  if (isPhoto(extension)) book(sPhotoCount, sPhotoSize, size);
  if (isVideo(extension)) book(sVideoCount, sVideoSize, size);
  sTotalCount = sPhotoCount + sVideoCount;
  sTotalSize = sPhotoSize + sVideoSize;
  showSourceLabels();
}

void OrganiseManager::increaseSourceDuplicate(const QString&, std::uint64_t size) {
  book(sDuplicateCount, sDuplicateSize, size);
  postRefresh(duplicatesPending_, &OrganiseManager::showDuplicates);
}

void OrganiseManager::increaseTargetCount(const QString& extension, std::uint64_t size) {
  const bool photo = isPhoto(extension);
  const bool video = isVideo(extension);
  if (photo) book(tPhotoCount, tPhotoSize, size);
  if (video) book(tVideoCount, tVideoSize, size);
  updateTargetTotals();
  if (photo) postRefresh(photosPending_, &OrganiseManager::showTargetPhotos);
  if (video) postRefresh(videosPending_, &OrganiseManager::showTargetVideos);
  postRefresh(totalsPending_, &OrganiseManager::showTargetTotals);
}

void OrganiseManager::increaseRotateCount(const QString&, std::uint64_t size) {
  book(tRotatedCount, tRotatedSize, size);
  updateTargetTotals();
  postRefresh(rotatedPending_, &OrganiseManager::showRotated);
}

void OrganiseManager::increaseTargetAlready(const QString&, std::uint64_t size) {
  book(tAlreadyCount, tAlreadySize, size);
  postRefresh(alreadyPending_, &OrganiseManager::showAlready);
}

void OrganiseManager::increaseFilteredPhoto(const QString&, std::uint64_t size) {
  book(tFilteredCount, tFilteredSize, size);
  postRefresh(filteredPending_, &OrganiseManager::showFiltered);
}

void OrganiseManager::updateTargetTotals() {
  tTotalCount = tPhotoCount + tVideoCount + tRotatedCount;
  tTotalSize = tPhotoSize + tVideoSize + tRotatedSize;
}

void OrganiseManager::showSourceLabels() {
  postRefresh(sourcesPending_, &OrganiseManager::showSourceCounters);
}

void OrganiseManager::showSourceLabelsTimer() {
  log(QStringLiteral("Timer"));
  showSourceLabels();
}

void OrganiseManager::showSourceCounters() {
  show(lblPhotoCount, lblPhotoSize, sPhotoCount, sPhotoSize);
  show(lblVideoCount, lblVideoSize, sVideoCount, sVideoSize);
  show(lblTotalCount, lblTotalSize, sTotalCount, sTotalSize);
}

void OrganiseManager::showDuplicates() {
  show(lblDuplicateCount, lblDuplicateSize, sDuplicateCount, sDuplicateSize);
}

void OrganiseManager::showTargetPhotos() { show(trgPhotoCount, trgPhotoSize, tPhotoCount, tPhotoSize); }

void OrganiseManager::showTargetVideos() { show(trgVideoCount, trgVideoSize, tVideoCount, tVideoSize); }

void OrganiseManager::showTargetTotals() {
  show(trgTotalCount, trgTotalSize, tTotalCount, tTotalSize);
  showProgress();
}

void OrganiseManager::showRotated() {
  show(trgRotatedCount, trgRotatedSize, tRotatedCount, tRotatedSize);
  showTargetTotals();
}

void OrganiseManager::showAlready() {
  show(trgExistCount, trgExistSize, tAlreadyCount, tAlreadySize);
  showProgress();
}

void OrganiseManager::showFiltered() {
  show(trgFilteredCount, trgFilteredSize, tFilteredCount, tFilteredSize);
  showProgress();
}

void OrganiseManager::showProgress() {
  processBar->setDoubleValue(static_cast<double>(tAlreadyCount + tTotalCount + tFilteredCount));
}

}  // namespace kestrova
