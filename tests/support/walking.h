#pragma once

#include "scan/folder_walk.h"

#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace kestrova::test {

inline bool isPhoto(std::string_view name) { return name.ends_with(".jpg"); }

using Visit = std::function<void(const WalkedFile&)>;

/// A walk of the host's own files that goes on to the end.
inline FolderWalk walkOfPhotos(Visit visit) {
  return {.wants = isPhoto, .keepsGoing = [] { return true; }, .visits = std::move(visit)};
}

inline bool walkFiles(const Path& root, const FolderWalk& walk) {
  return walkFolder(*systemFileManager(), root, walk);
}

inline void failOn(const WalkedFile& file) { ADD_FAILURE() << file.path; }

/// The path of an item relative to the root of its walk.
inline std::string nameBelow(const Path& path, const Path& root) {
  return path.native().substr(root.native().size() + 1);
}

}  // namespace kestrova::test
