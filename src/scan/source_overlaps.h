#pragma once

#include "platform/file_manager.h"

#include <vector>

namespace kestrova {

/// Two folders of a run that share files.
struct Overlap {
  enum class Kind {
    sourceTwice,         ///< `other` is the same source, listed before
    sourceInsideSource,  ///< in `other`
    sourceInsideTarget,
    targetInsideSource,
    targetIsSource,
  };
  Kind kind = Kind::sourceTwice;
  Path source = {};
  Path other = {};  ///< another source, or the target
};

/// What is to be known of a run's folders before it begins, in the order of the sources. Symbolic links are
/// followed.
std::vector<Overlap> overlapsOf(const std::vector<Path>& sources, const Path& target);

}  // namespace kestrova
