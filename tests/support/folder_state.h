#pragma once

#include "support/temporary_folder.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kestrova::test {

/// Everything about an item that a program could change, except its access time.
struct ItemState {
  std::uint64_t inode = 0;
  unsigned mode = 0;
  std::int64_t modified = 0;  ///< nanoseconds since 1970
  std::int64_t changed = 0;   ///< of bytes, attributes or names, nanoseconds since 1970
  std::string contents;       ///< of a readable file; or where a symbolic link leads
  bool operator==(const ItemState&) const = default;
};

/// Of the items below a folder, by their paths relative to it; the folder itself is ".".
using FolderState = std::map<std::string, ItemState>;

FolderState stateOf(const Path& folder);

/// The items that were added, removed or changed.
std::vector<std::string> changes(const FolderState& before, const FolderState& after);

}  // namespace kestrova::test
