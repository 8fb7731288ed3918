#pragma once

#include <cstdint>

namespace kestrova {

/// A date as the user's calendar and clock show it.
struct DateParts {
  std::int64_t year = 0;
  int month = 0;  ///< 1 to 12
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int weekday = 0;  ///< 1 = Sunday to 7 = Saturday
  bool operator==(const DateParts&) const = default;
};

}  // namespace kestrova
