#pragma once

#include "platform/file_manager.h"

#include <string_view>

namespace kestrova {

/// Creates what is missing of a path, folder by folder. It is not an error if another program creates a
/// folder at the same time. Symbolic links to folders are followed. A file in the way is ENOTDIR.
FileResult<void> createFolders(const Path& path);

/// Creates one folder. It is not an error if it exists, or if anything else has its name.
FileResult<void> createFolder(int parent, const char* name);

/// Cuts the first name off a path; empty when nothing is left.
std::string_view takeFirstName(std::string_view& path);

}  // namespace kestrova
