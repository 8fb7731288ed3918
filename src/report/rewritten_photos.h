#pragma once

#include "report/content.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kestrova::report {

/// Nothing, or why a photo that a run wrote is not intact: its bytes are no longer those of the recorded
/// SHA-256 sum, or they do not decode. An empty sum is not asked for.
std::optional<std::string> whyNotWhole(const Path& photo, std::string_view sha256, ReadFrom from,
                                       const Stopped& stopped = {});

/// The photos that runs rewrote into a target, found by the content of their sources.
class RewrittenPhotos {
 public:
  /// Reads all records in the folder `runs`. Of those whose target was another folder, what lies below
  /// `target` counts too.
  RewrittenPhotos(const Path& runs, const Path& target, const FileManager& files);

  /// Whether a record binds this photo's very bytes to a file that is still what the run wrote, and that
  /// decodes. A link in the target does not count.
  bool hold(const Path& photo, const Stopped& stopped = {}) const;

 private:
  struct Written {
    Path target;
    std::string sha256;
  };

  void addRows(const Path& rows, const Path& targetOfRun, const Path& target);

  std::unordered_multimap<std::string, Written> bySourceSum_;
};

}  // namespace kestrova::report
