#pragma once

#include "platform/file_manager.h"

namespace kestrova {

// All of these work inside one open folder, fail with EEXIST when the new name is taken (also by a symbolic
// link), and never show a half-written file.

/// Renames in the best way that the file system supports.
FileResult<void> renameWithoutReplacing(int folder, const char* from, const char* to);

/// The way for file systems with hard links. A crash in between leaves both names, never none.
FileResult<void> linkThenUnlink(int folder, const char* from, const char* to);

/// The last resort, for file systems that support neither. Other runs, of this process or another one, wait
/// their turn for the folder (EBUSY when it does not come); a file that any other program creates in the same
/// instant would be replaced.
FileResult<void> renameWhereFree(int folder, const char* from, const char* to);

}  // namespace kestrova
