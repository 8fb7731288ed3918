#pragma once

#include "platform/file_manager.h"

namespace kestrova {

/// Whether files can be created in the folder or, where it is missing, whether it can be created: the error
/// says why not. Changes nothing; whether there is room is not asked.
FileResult<void> checkCanWriteBelow(const Path& folder);

}  // namespace kestrova
