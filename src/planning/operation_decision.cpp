#include "planning/operation_decision.h"

namespace kestrova {

bool isSmallFile(const FileFacts& file, const PlanningOptions& options) {
  const auto size = static_cast<std::int64_t>(file.size);
  return (options.filterSmallPhotos && file.isPhoto && size < smallestPhoto) ||
         (options.filterSmallVideos && file.isVideo && size < smallestVideo);
}

bool isSmallPicture(const ImageMetadata& metadata, const PlanningOptions& options) {
  if (!options.filterSmallPhotos || !metadata.pixelWidth || !metadata.pixelHeight) return false;
  return *metadata.pixelWidth < smallestPhotoSide || *metadata.pixelHeight < smallestPhotoSide;
}

PlanEntry::Handler chooseHandler(const FileFacts& file, const ImageMetadata& metadata,
                                 const PlanningOptions& options) {
  const auto* resolution = rowOf(options.resolution);
  const bool isToShrink = file.isPhoto && resolution != nullptr && resolution->frame;
  const bool isToTurn = options.rotate && metadata.orientation.value_or(1) != 1;
  return isToShrink || isToTurn ? PlanEntry::Handler::resize : PlanEntry::Handler::copy;
}

MediaKind mediaKindOf(const FileFacts& file) {
  if (file.isVideo) return MediaKind::video;
  return file.isPhoto ? MediaKind::photo : MediaKind::other;
}

}  // namespace kestrova
