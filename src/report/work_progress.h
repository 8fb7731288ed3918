#pragma once

#include "model/amount.h"

#include <functional>

namespace kestrova::report {

/// How far a piece of work is.
struct WorkProgress {
  Amount done;
  Amount total;  ///< empty while it is being found out: `done` is then what has been found
};

/// Called after each file, on the caller's thread.
using ProgressListener = std::function<void(const WorkProgress&)>;

}  // namespace kestrova::report
