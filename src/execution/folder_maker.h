#pragma once

#include "platform/file_manager.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace kestrova {

/// Creates the folders that a run needs, and remembers which of them were missing. Calls must not overlap.
class FolderMaker {
 public:
  FolderMaker() = default;
  /// Folders are remembered below the target folder only.
  explicit FolderMaker(Path target) : target_(std::move(target)) {}

  /// Creates the folder and all missing folders above it; it is not an error if it exists.
  FileResult<void> create(FileManager& files, const Path& folder);

  /// The folders that came into being since this was last asked, relative to the target folder, the outermost
  /// first.
  std::vector<Path> takeCreated();

 private:
  Path target_;
  std::unordered_set<std::string> seen_;  ///< folders that are there, or were
  std::vector<Path> created_;
};

}  // namespace kestrova
