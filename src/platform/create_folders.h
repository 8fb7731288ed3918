#pragma once

#include "platform/file_manager.h"

#include <string_view>

namespace kestrova {

/// Creates what is missing of a path, folder by folder. Folders that somebody else creates at the same time
/// are no error. Symbolic links to folders are followed. A file in the way is ENOTDIR.
FileResult<void> createFolders(const Path& path);

/// Creates one folder; one that exists is no error, and neither is anything else of that name.
FileResult<void> createFolder(int parent, const char* name);

/// Cuts the first name off a path; empty at its end.
std::string_view takeFirstName(std::string_view& path);

}  // namespace kestrova
