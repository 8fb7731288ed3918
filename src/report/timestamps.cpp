#include "report/timestamps.h"

namespace kestrova::report {

// Times of all years that files can have do not fit into 64 bits of nanoseconds.
std::string nanosecondsText(const Date& date) {
  constexpr std::int64_t perSecond = 1'000'000'000;
  const bool isNegative = date.seconds < 0;
  const std::int64_t seconds = isNegative ? -(date.seconds + (date.nanoseconds > 0 ? 1 : 0)) : date.seconds;
  const std::int64_t rest = isNegative && date.nanoseconds > 0 ? perSecond - date.nanoseconds : date.nanoseconds;
  std::string digits = std::to_string(rest);
  if (seconds != 0) digits = std::to_string(seconds) + std::string(9 - digits.size(), '0') + digits;
  return (isNegative ? "-" : "") + digits;
}

}  // namespace kestrova::report
