#pragma once

#include "platform/file_manager.h"

namespace kestrova {

/// Creates what is missing of a path, folder by folder; whoever creates one of them at the same time is
/// welcome. Symbolic links to folders are followed. A file in the way is ENOTDIR.
FileResult<void> createFolders(const Path& path);

}  // namespace kestrova
