#pragma once

#include "platform/file_manager.h"

namespace kestrova {

/// The path with a leading "~" replaced by the user's home folder, or "~name" by that user's; unchanged if it
/// has none or there is no such user.
Path expandingTilde(const Path& path);

}  // namespace kestrova
