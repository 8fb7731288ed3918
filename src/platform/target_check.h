#pragma once

#include "platform/file_manager.h"

namespace kestrova {

/// Whether files can be created in the folder or, where it is missing, whether it can be created: the error
/// says why not. Changes nothing; free space is not checked.
FileResult<void> checkCanWriteBelow(const Path& folder);

}  // namespace kestrova
