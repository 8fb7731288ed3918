#pragma once

#include "platform/file_manager.h"

namespace kestrova {

/// A name in an open folder.
struct NameInFolder {
  int folder = -1;
  const char* name = "";
};

// All of these work within one volume, fail with EEXIST when the new name is taken (also by a symbolic link),
// and never show a half-written file.

/// Renames in the best way that the file system supports.
FileResult<void> renameWithoutReplacing(const NameInFolder& from, const NameInFolder& to);

/// The way for file systems with hard links. A crash in between leaves both names, never none.
FileResult<void> linkThenUnlink(const NameInFolder& from, const NameInFolder& to);

/// The last resort, for file systems that support neither. Other runs, of this process or another one, wait
/// their turn for the new folder (EBUSY when it does not come); a file that any other program creates in the
/// same instant would be replaced.
FileResult<void> renameWhereFree(const NameInFolder& from, const NameInFolder& to);

}  // namespace kestrova
