#pragma once

#include "platform/file_manager.h"

#include <map>
#include <string>
#include <vector>

namespace kestrova::test {

using Tags = std::map<std::string, std::string>;

/// All that exiftool lists of a file but what it says of the file itself, by group and name.
Tags tagsOf(const Path& file);

/// One line for each tag that was lost, came up or changed, but for those that writing the pixels anew may
/// change: orientation, pixel size, preview, and where things stand in the file.
std::vector<std::string> unexpectedChanges(const Tags& source, const Tags& result);

}  // namespace kestrova::test
