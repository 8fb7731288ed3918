#pragma once

#include "platform/file_manager.h"

#include <cstddef>
#include <string>
#include <unordered_map>

namespace kestrova::report {

/// Which row of a run is the last that wrote a target: of several, only that one describes the file that is
/// there. Rows have numbers of the caller's choice that grow.
class LastRows {
 public:
  /// Returns whether it is the target's first row.
  bool add(const Path& target, std::size_t number) {
    return lastRowOf_.insert_or_assign(target.native(), number).second;
  }

  /// Whether no row after that one wrote the target.
  bool isLast(const Path& target, std::size_t number) const {
    const auto last = lastRowOf_.find(target.native());
    return last == lastRowOf_.end() || last->second <= number;
  }

 private:
  std::unordered_map<std::string, std::size_t> lastRowOf_;
};

}  // namespace kestrova::report
