#pragma once

#include "platform/file_manager.h"

#include <string>

namespace kestrova::report {

/// Nanoseconds since 1970 UTC in decimal digits, as records hold times: JSON's numbers are too coarse.
std::string nanosecondsText(const Date& date);

}  // namespace kestrova::report
