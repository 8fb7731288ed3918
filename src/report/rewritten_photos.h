#pragma once

#include "report/content.h"

#include <memory>
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
  /// Those below `target` that the records in the folder `runs` tell of, whichever folder a run was given as
  /// its target. The records are read when the first photo is asked for.
  RewrittenPhotos(Path runs, Path target, std::shared_ptr<const FileManager> files);

  /// Whether a record binds this photo's very bytes to a file that is still what the run wrote, and that
  /// decodes. A link in the target does not count.
  bool hold(const Path& photo, const Stopped& stopped = {});

 private:
  struct Written {
    Path target;
    std::string sha256;
  };

  void readRecords();
  void addRows(const Path& rows, const Path& targetOfRun, const Path& target);

  const Path runs_;
  const Path target_;
  const std::shared_ptr<const FileManager> files_;
  bool areRead_ = false;
  std::unordered_multimap<std::string, Written> bySourceSum_;
};

}  // namespace kestrova::report
