#pragma once

#include "platform/file_manager.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestrova {

/// The absolute string of a file's URL: "file://" and the path's bytes, percent-encoded where RFC 3986 does
/// not allow them in a path.
std::string fileUrlString(const Path& path);

/// The path that such a string stands for; nothing when it is not a file URL with an absolute path, or
/// contains a malformed percent escape or a NUL byte.
std::optional<Path> pathOfFileUrl(std::string_view url);

/// Removes percent escapes; a text with a malformed one stays as it is.
std::string removingPercentEncoding(std::string_view text);

}  // namespace kestrova
