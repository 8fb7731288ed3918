#include "app/organise_manager.h"
#include "scan/content_fingerprint.h"
#include "scan/media_classification.h"

namespace kestrova {

bool OrganiseManager::isPhoto(const QString& extension) const {
  return listHoldsExtension(extensionImages.get(), extension);
}

bool OrganiseManager::isVideo(const QString& extension) const {
  return listHoldsExtension(extensionVideo.get(), extension);
}

// The name is older than the count.
std::optional<Bytes> OrganiseManager::read10KFromFile(const Path& path) const {
  return host_.files->readPrefix(path, prefixLength);
}

std::string OrganiseManager::hashData(const std::optional<Bytes>& data) const {
  return contentFingerprint(data);
}

}  // namespace kestrova
