#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <optional>

namespace kestrova {

/// What is to be done with a file, as data: made while planning, turned into a record when it is queued.
struct PlanEntry {
  enum class Handler { copy, resize };
  Handler handler = Handler::copy;
  Path from;
  std::optional<Path> to;
  std::optional<std::int64_t> orientation;
  std::int64_t resolution = 0;
};

}  // namespace kestrova
