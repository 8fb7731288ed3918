#pragma once

#include "platform/file_manager.h"

#include <chrono>
#include <string>

namespace kestrova::report {

/// Nanoseconds since 1970 UTC in decimal digits, as records hold times: JSON's numbers are too coarse.
std::string nanosecondsText(const Date& date);

/// The current time, for the start and the end of a run.
std::chrono::sys_seconds currentSecond();

/// A time in UTC in a format of strftime; by default as in run.json: 2026-11-21T10:15:02Z.
std::string utcText(std::chrono::sys_seconds time, const char* format = "%Y-%m-%dT%H:%M:%SZ");

}  // namespace kestrova::report
