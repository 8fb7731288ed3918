#pragma once

#include "planning/plan_entry.h"
#include "platform/file_manager.h"

#include <optional>

namespace kestrova {

/// Fails for a file that is another than it was when the run was planned. Absent where that is not known. For
/// as long as the plan's values live.
SourceCheck checkAgainst(const std::optional<PlannedSource>& planned);

}  // namespace kestrova
