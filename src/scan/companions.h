#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova {

/// Counts files that belong together and of which one was left behind: sidecars, which hold what was done to
/// a photo or video, and videos that are one half of a live photo. They stand in one folder under one name,
/// except for the extension. Keeps no more than the names of one such group.
class Companions {
 public:
  /// The files in the order of the walk, whether or not they are organised; `path` in bytes.
  void see(std::string_view path, bool isTaken);
  /// No more files come.
  void finish();

  std::int64_t sidecars() const { return sidecars_; }  ///< left behind, of photos and videos that were taken
  std::int64_t videosWithoutStill() const { return videosWithoutStill_; }  ///< whose still was left behind

 private:
  struct File {
    std::string name;
    bool isTaken = false;
  };

  bool isBeside(std::string_view sidecar) const;
  bool hasStillLeftBehind(std::string_view video) const;

  std::string group_;  ///< what all their paths begin with
  std::vector<File> files_;
  std::int64_t sidecars_ = 0;
  std::int64_t videosWithoutStill_ = 0;
};

}  // namespace kestrova
