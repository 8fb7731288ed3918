#include "report/timestamps.h"

#include <ctime>

namespace kestrova::report {

namespace {

constexpr std::int32_t nanosecondsOfSecond = 1'000'000'000;
constexpr std::size_t digitsOfNanoseconds = 9;

}  // namespace

// Digit by digit: a file's time may be more nanoseconds away from 1970 than 64 bits can count.
std::string nanosecondsText(const Date& date) {
  const bool roundsUp = date.seconds < 0 && date.nanoseconds > 0;
  const std::int64_t seconds = roundsUp ? date.seconds + 1 : date.seconds;
  const std::int32_t rest = roundsUp ? nanosecondsOfSecond - date.nanoseconds : date.nanoseconds;
  const std::string digits = std::to_string(rest);
  if (seconds == 0) return (date.seconds < 0 ? "-" : "") + digits;
  return std::to_string(seconds) + std::string(digitsOfNanoseconds - digits.size(), '0') + digits;
}

std::chrono::sys_seconds currentSecond() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

std::string utcText(std::chrono::sys_seconds time, const char* format) {
  const std::time_t seconds = time.time_since_epoch().count();
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[32];
  return {text, std::strftime(text, sizeof text, format, &utc)};
}

}  // namespace kestrova::report
