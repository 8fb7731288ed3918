#pragma once

#include "planning/plan_entry.h"
#include "platform/file_manager.h"

namespace kestrova {

/// Fails for a file that is another than it was when the run was planned. Absent where that is not known.
SourceCheck checkAgainst(const PlannedSource& planned);

}  // namespace kestrova
