#pragma once

#include "platform/file_manager.h"

#include <sys/stat.h>

namespace kestrova {

/// An item's attributes from the system's status.
FileAttributes attributesOf(const struct stat& status);

/// The attributes of the item that a path leads to from an open folder; symbolic links are followed.
FileResult<FileAttributes> attributesAt(int folder, const char* path);

}  // namespace kestrova
