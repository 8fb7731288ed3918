#pragma once

#include "model/options.h"
#include "planning/image_metadata.h"
#include "planning/plan_entry.h"
#include "planning/target_naming.h"

#include <cstdint>

namespace kestrova {

/// The options that decide what happens to a file, as the window shows them at one moment.
struct PlanningOptions {
  bool filterSmallPhotos = false;
  bool filterSmallVideos = false;
  bool rotate = false;
  FolderFormat folderFormat = FolderFormat::longName;
  Resolution resolution = Resolution::original;
};

/// A source file as planning sees it. A file may count as both a photo and a video.
struct FileFacts {
  std::uint64_t size = 0;  ///< bytes
  bool isPhoto = false;
  bool isVideo = false;
};

constexpr std::int64_t smallestPhoto = 20000;    ///< bytes
constexpr std::int64_t smallestVideo = 2000000;  ///< bytes
constexpr std::int64_t smallestPhotoSide = 400;  ///< pixels

/// Whether a filter leaves the file out because of its size in bytes.
bool isSmallFile(const FileFacts& file, const PlanningOptions& options);

/// Whether the filter leaves a photo out because of its size in pixels; a photo of unknown size is kept.
bool isSmallPicture(const ImageMetadata& metadata, const PlanningOptions& options);

/// A photo that is to be shrunk or turned is rewritten; everything else is copied.
PlanEntry::Handler chooseHandler(const FileFacts& file, const ImageMetadata& metadata,
                                 const PlanningOptions& options);

/// A file in both lists is named as a video.
MediaKind mediaKindOf(const FileFacts& file);

}  // namespace kestrova
