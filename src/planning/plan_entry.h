#pragma once

#include "model/naming_date.h"
#include "model/options.h"
#include "platform/file_manager.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kestrova {

/// What the plan knows of a source file: goes with its operation, to be compared with what is found then, and
/// told in the verdict.
struct PlannedSource {
  std::uint64_t size = 0;               ///< bytes
  std::optional<Date> modified = {};    ///< absent: neither could be read
  std::optional<NamingDate> date = {};  ///< that it is named by
  bool isNameTaken = false;             ///< another file of the run was given the target's name before
  std::string readError = {};           ///< why its attributes or first bytes could not be read, in UTF-8
};

/// What is to be done with a file, as data: made while planning, turned into a record when it is queued.
struct PlanEntry {
  enum class Handler { copy, resize };
  Handler handler = Handler::copy;
  Path from;
  std::optional<Path> to = {};
  std::optional<std::int64_t> orientation = {};
  Resolution resolution = Resolution::original;
  PlannedSource planned = {};
};

}  // namespace kestrova
