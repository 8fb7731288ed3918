#pragma once

#include "platform/file_manager.h"

#include <functional>
#include <string>

namespace kestrova {

/// Puts a file under the given name in the given folder, and returns its descriptor (owned by the caller);
/// fails with EEXIST when the name is taken.
using PutFile = std::function<FileResult<int>(const char* name)>;

/// Finds a free temporary name in an open folder and lets `put` place its file there. Names are hidden, short
/// and numbered; `number` is where to begin, so that many files need not try each other's names. Their owner
/// keeps a lock on the file. So one left by a killed run is recognised: it is removed, and its name is
/// reused.
FileResult<std::string> takeTemporaryName(int folder, const PutFile& put, int number = 0);

}  // namespace kestrova
