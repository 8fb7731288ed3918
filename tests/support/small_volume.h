#pragma once

#include "platform/file_manager.h"

#include <cstddef>
#include <functional>

namespace kestrova::test {

/// Mounts a file system of the given size, in memory and visible to nobody else, runs `work` on a thread that
/// sees it, and unmounts it. False, without running anything, if the system does not permit this.
bool withSmallVolume(std::size_t bytes, const std::function<void(const Path& folder)>& work);

}  // namespace kestrova::test
