#include "app/organise_manager.h"
#include "scan/media_classification.h"

namespace kestrova {

bool OrganiseManager::isPhoto(const QString& extension) const {
  return listHoldsExtension(extensionImages.get(), extension);
}

bool OrganiseManager::isVideo(const QString& extension) const {
  return listHoldsExtension(extensionVideo.get(), extension);
}

}  // namespace kestrova
