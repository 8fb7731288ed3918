#pragma once

#include "platform/file_manager.h"

#include <map>
#include <string>
#include <vector>

namespace kestrova::test {

using Tags = std::map<std::string, std::string>;

/// Everything that exiftool lists about a file, except about the file itself, by group and name.
Tags tagsOf(const Path& file);

/// One line for each tag that was lost, added or changed, except for those that re-encoding the pixels may
/// change: orientation, pixel size, preview, and positions in the file.
std::vector<std::string> unexpectedChanges(const Tags& source, const Tags& result);

}  // namespace kestrova::test
