#pragma once

#include "platform/file_manager.h"

namespace kestrova::report {

/// Moves a file into the desktop's trash, on the file's own volume (as freedesktop.org lays trash out). A
/// name that is not UTF-8 is refused: the trash could not give it back.
FileResult<void> moveToTrash(const Path& file);

/// Deletes a file for good.
FileResult<void> deleteFile(const Path& file);

}  // namespace kestrova::report
