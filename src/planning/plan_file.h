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

/// What planning a file needs besides the file: the state of the run at that moment. The lists and tables
/// belong to the caller.
struct PlanningContext {
  PlanningOptions options;
  const ExtensionList& photos;
  const ExtensionList& videos;
  const NameTable& months;
  const NameTable& days;
  std::optional<Path> target;  ///< the target folder
  Date runStart;               ///< dates a file that has no date at all
};

/// What is to be done with a file, or what becomes of it at once: it is left out as small, or its target is
/// there, or cannot be asked for. Asks for the file's attributes once; of a photo it reads the first 40960
/// bytes, of other files nothing. A file that cannot be read passes for one of size 0, a photo of which
/// nothing can be read for one that tells nothing of itself; a verdict on such a file is `unreadable`. Writes
/// to the log. Throws nothing but what `files` throws.
tl::expected<PlanEntry, Verdict> planFile(const Path& file, const PlanningContext& context,
                                          const FileManager& files);

}  // namespace kestrova
