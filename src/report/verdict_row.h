#pragma once

#include "model/verdict.h"
#include "report/row.h"

namespace kestrova::report {

/// What a record holds of a verdict. `targetFolder` is the run's.
FileRow rowOf(Verdict verdict, const Path& targetFolder);

}  // namespace kestrova::report
