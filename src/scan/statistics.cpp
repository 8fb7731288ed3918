#include "app/organise_manager.h"
#include "platform/log.h"
#include "scan/size_text.h"

namespace kestrova {

void OrganiseManager::increaseSourceCount(const QString& extension, std::uint64_t size) {
  if (isPhoto(extension)) {
    sPhotoCount += 1;
    sPhotoSize += static_cast<std::int64_t>(size);
  }
  if (isVideo(extension)) {
    sVideoCount += 1;
    sVideoSize += static_cast<std::int64_t>(size);
  }
  sTotalCount = sPhotoCount + sVideoCount;
  sTotalSize = sPhotoSize + sVideoSize;
  showSourceLabels();
}

void OrganiseManager::increaseSourceDuplicate(const QString&, std::uint64_t size) {
  sDuplicateCount += 1;
  sDuplicateSize += static_cast<std::int64_t>(size);
  postRefresh(duplicatesPending_, &OrganiseManager::showDuplicates);
}

void OrganiseManager::increaseTargetCount(const QString& extension, std::uint64_t size) {
  const bool photo = isPhoto(extension);
  const bool video = isVideo(extension);
  if (photo) {
    tPhotoCount += 1;
    tPhotoSize += static_cast<std::int64_t>(size);
  }
  if (video) {
    tVideoCount += 1;
    tVideoSize += static_cast<std::int64_t>(size);
  }
  updateTargetTotals();
  if (photo) postRefresh(photosPending_, &OrganiseManager::showTargetPhotos);
  if (video) postRefresh(videosPending_, &OrganiseManager::showTargetVideos);
  postRefresh(totalsPending_, &OrganiseManager::showTargetTotals);
}

void OrganiseManager::increaseRotateCount(const QString&, std::uint64_t size) {
  tRotatedCount += 1;
  tRotatedSize += static_cast<std::int64_t>(size);
  updateTargetTotals();
  postRefresh(rotatedPending_, &OrganiseManager::showRotated);
}

void OrganiseManager::increaseTargetAlready(const QString&, std::uint64_t size) {
  tAlreadyCount += 1;
  tAlreadySize += static_cast<std::int64_t>(size);
  postRefresh(alreadyPending_, &OrganiseManager::showAlready);
}

void OrganiseManager::increaseFilteredPhoto(const QString&, std::uint64_t size) {
  tFilteredCount += 1;
  tFilteredSize += static_cast<std::int64_t>(size);
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
  lblPhotoCount->setStringValue(countText(sPhotoCount));
  lblPhotoSize->setStringValue(sizeText(sPhotoSize));
  lblVideoCount->setStringValue(countText(sVideoCount));
  lblVideoSize->setStringValue(sizeText(sVideoSize));
  lblTotalCount->setStringValue(countText(sTotalCount));
  lblTotalSize->setStringValue(sizeText(sTotalSize));
}

void OrganiseManager::showDuplicates() {
  lblDuplicateCount->setStringValue(countText(sDuplicateCount));
  lblDuplicateSize->setStringValue(sizeText(sDuplicateSize));
}

void OrganiseManager::showTargetPhotos() {
  trgPhotoCount->setStringValue(countText(tPhotoCount));
  trgPhotoSize->setStringValue(sizeText(tPhotoSize));
}

void OrganiseManager::showTargetVideos() {
  trgVideoCount->setStringValue(countText(tVideoCount));
  trgVideoSize->setStringValue(sizeText(tVideoSize));
}

void OrganiseManager::showTargetTotals() {
  trgTotalCount->setStringValue(countText(tTotalCount));
  trgTotalSize->setStringValue(sizeText(tTotalSize));
  showProgress();
}

void OrganiseManager::showRotated() {
  trgRotatedCount->setStringValue(countText(tRotatedCount));
  trgRotatedSize->setStringValue(sizeText(tRotatedSize));
  showTargetTotals();
}

void OrganiseManager::showAlready() {
  trgExistCount->setStringValue(countText(tAlreadyCount));
  trgExistSize->setStringValue(sizeText(tAlreadySize));
  showProgress();
}

void OrganiseManager::showFiltered() {
  trgFilteredCount->setStringValue(countText(tFilteredCount));
  trgFilteredSize->setStringValue(sizeText(tFilteredSize));
  showProgress();
}

void OrganiseManager::showProgress() {
  processBar->setDoubleValue(static_cast<double>(tAlreadyCount + tTotalCount + tFilteredCount));
}

}  // namespace kestrova
