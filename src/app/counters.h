#pragma once

#include "platform/relaxed_atomic.h"

#include <cstddef>

namespace kestrova {

/// What a run has counted so far. One worker at a time raises them; any thread may read them.
struct Counters {
  /// Groups of labels that are shown together.
  enum class Rows { found, duplicates, copiedPhotos, copiedVideos, written, rewritten, already, filtered };
  static constexpr std::size_t rowGroups = 8;

  // Source side: files and bytes
  Counter sTotalCount, sTotalSize;
  Counter sDuplicateCount, sDuplicateSize;
  Counter sPhotoCount, sPhotoSize;
  Counter sVideoCount, sVideoSize;

  // Target side: files and bytes
  Counter tTotalCount, tTotalSize;
  Counter tPhotoCount, tPhotoSize;
  Counter tVideoCount, tVideoSize;
  Counter tAlreadyCount, tAlreadySize;    ///< targets that were there when the run was planned
  Counter tRotatedCount, tRotatedSize;    ///< rewritten photos, resized ones included
  Counter tFilteredCount, tFilteredSize;  ///< small photos and videos left out
  Counter targetCount, targetSize;
  Counter targetExistCount;  ///< targets that were found to exist when they were to be written
};

}  // namespace kestrova
