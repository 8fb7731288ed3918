#include "execution/folder_maker.h"

#include "platform/path_relation.h"

#include <algorithm>
#include <utility>

namespace kestrova {

// Each folder is asked for once only: a run creates few and comes to them often.
FileResult<void> FolderMaker::create(FileManager& files, const Path& folder) {
  std::vector<Path> missing;
  for (Path above = folder; above != target_ && isInside(above, target_); above = above.parent_path()) {
    if (!seen_.insert(above.native()).second || files.isDirectory(above)) break;
    missing.push_back(above.lexically_relative(target_));
  }
  auto made = files.createDirectory(folder);
  if (made) {
    created_.insert(created_.end(), missing.rbegin(), missing.rend());
  } else {
    for (const Path& name : missing) seen_.erase((target_ / name).native());
  }
  return made;
}

std::vector<Path> FolderMaker::takeCreated() { return std::exchange(created_, {}); }

}  // namespace kestrova
