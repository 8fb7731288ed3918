#pragma once

#include "model/naming_date.h"
#include "model/options.h"
#include "platform/file_manager.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kestrova {

/// What the plan knows about a source file. The operation carries it and compares it with what it finds; the
/// verdict repeats it.
struct PlannedSource {
  std::uint64_t size = 0;               ///< bytes
  std::optional<Date> modified = {};    ///< absent if neither could be read
  std::optional<NamingDate> date = {};  ///< used in its name
  bool isNameTaken = false;             ///< an earlier file of the run has the target's name
  std::string readError = {};           ///< why its attributes or first bytes could not be read, in UTF-8
};

/// What to do with a file, as data. It is made while planning, and turned into a record when it is queued.
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
