#pragma once

#include "support/temporary_folder.h"

#include <string>
#include <vector>

namespace kestrova::test {

/// A photo or video as a run meets it; a link to one counts as another.
struct TreeFile {
  Path path;
  std::string contents;
  std::string extension;  ///< in lower case
  std::string date;       ///< of its name, in UTC: "20140521134502"
  bool isReadable = true;

  bool isVideo() const;
  /// Where a run with short folders, in UTC, puts it, relative to the target.
  std::string targetName() const;
};

/// Writes what users have, and worse, below `folder`: photos that are turned, small, cut off or have a wrong
/// extension, videos, copies, files of one size and date with other contents, links, unreadable files and
/// folders, names of any bytes. Returns the photos and videos that can be reached. The same seed always
/// writes the same tree.
std::vector<TreeFile> writeRandomTree(const Path& folder, unsigned seed);

}  // namespace kestrova::test
