#pragma once

#include "platform/file_manager.h"

#include <string>
#include <string_view>

namespace kestrova::report {

/// A line for `sha256sum --check` (GNU coreutils), with its line end: the sum in hexadecimal digits, two
/// spaces, the name. Of a name with a backslash or a new line both are escaped, and the line begins with a
/// backslash.
std::string checksumLine(std::string_view sha256, const Path& name);

}  // namespace kestrova::report
