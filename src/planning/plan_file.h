#pragma once

#include "model/verdict.h"
#include "planning/operation_decision.h"
#include "planning/plan_entry.h"
#include "planning/target_naming.h"
#include "platform/file_manager.h"
#include "scan/media_classification.h"

#include <optional>

#include <tl/expected.hpp>

namespace kestrova {

/// What planning needs apart from the file itself: the state of the run at that moment. The lists and tables
/// belong to the caller.
struct PlanningContext {
  PlanningOptions options;
  const ExtensionList& photos;
  const ExtensionList& videos;
  const NameTable& months;
  const NameTable& days;
  std::optional<Path> target;  ///< the target folder
  Date runStart;               ///< the date of a file that has none at all
};

/// What to do with a file, or its verdict if that is already certain: it is left out as small, or its target
/// exists or cannot be checked. Reads the file's attributes once, and the first 40960 bytes of a photo. A
/// file that cannot be read counts as one of size 0, or as a photo without metadata; a verdict on it is
/// `unreadable`. Writes to the log. Throws only what `files` throws.
tl::expected<PlanEntry, Verdict> planFile(const Path& file, const PlanningContext& context,
                                          const FileManager& files);

}  // namespace kestrova
