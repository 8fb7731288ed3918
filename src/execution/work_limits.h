#pragma once

#include "execution/work_ahead.h"
#include "platform/file_manager.h"

#include <cstddef>
#include <vector>

namespace kestrova {

/// How many threads suit a run: one a core, but at most 8; and 8 where a folder is on a network or FUSE
/// volume, as waiting takes most of the time there.
std::size_t usualJobs(const std::vector<Path>& sources, const Path& target);

/// How much so many threads may prepare ahead: a share of the memory and of the open files that there are.
WorkAhead::Limits workLimits(std::size_t jobs);

}  // namespace kestrova
