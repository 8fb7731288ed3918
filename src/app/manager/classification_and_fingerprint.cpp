#include "app/organise_manager.h"
#include "scan/content_fingerprint.h"
#include "scan/media_classification.h"

namespace kestrova {

bool OrganiseManager::isPhoto(std::string_view extension) const {
  return extensionImages.get().holds(extension);
}

bool OrganiseManager::isVideo(std::string_view extension) const {
  return extensionVideo.get().holds(extension);
}

// The name is older than the count.
std::optional<Bytes> OrganiseManager::read10KFromFile(const Path& path) const {
  auto start = host_.files->readPrefix(path, prefixLength);
  if (!start) return std::nullopt;
  return *std::move(start);
}

std::string OrganiseManager::hashData(const std::optional<Bytes>& data) const {
  return contentFingerprint(data);
}

}  // namespace kestrova
