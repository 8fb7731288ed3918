#pragma once

#include "platform/file_manager.h"

#include <cstddef>
#include <cstdint>

namespace kestrova {

// What the machine has, and what the process may use of it.

std::size_t coreCount();

/// Bytes of memory.
std::uint64_t memorySize();

/// How many files the process may have open.
std::size_t openFileLimit();

/// Whether the folder is on a network or FUSE volume, where every call may wait. A missing folder is on the
/// volume on which it would be created. False where that cannot be told.
bool isOnRemoteVolume(const Path& folder);

}  // namespace kestrova
