#pragma once

#include "platform/file_manager.h"

namespace kestrova {

// All of them: inside one open folder, EEXIST when the new name is taken (by a symbolic link, too), and a
// file that is never seen half written.

/// Renames by the best way that the file system knows.
FileResult<void> renameWithoutReplacing(int folder, const char* from, const char* to);

/// The way for file systems with hard links. A crash in between leaves both names, never none.
FileResult<void> linkThenUnlink(int folder, const char* from, const char* to);

/// The last resort, for file systems that know neither. Other runs, of this process or another one, wait
/// their turn for the folder (EBUSY when it does not come); a file that any other program creates in the same
/// instant would be replaced.
FileResult<void> renameWhereFree(int folder, const char* from, const char* to);

}  // namespace kestrova
