#pragma once

#include "platform/file_manager.h"

#include <sys/stat.h>

namespace kestrova {

/// What the system's status says of an item.
FileAttributes attributesOf(const struct stat& status);

/// Of what a path leads to from an open folder; symbolic links are followed.
FileResult<FileAttributes> attributesAt(int folder, const char* path);

}  // namespace kestrova
