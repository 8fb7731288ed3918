#include "planning/calendar.h"

#include <chrono>
#include <ctime>
#include <initializer_list>

namespace kestrova {

namespace {

using std::chrono::seconds;
using std::chrono::sys_days;

constexpr std::int64_t secondsOfDay = 86400;
/// The calendar repeats after 400 years, weekdays included.
constexpr std::int64_t yearsOfCycle = 400;
constexpr std::int64_t secondsOfCycle = 146097 * secondsOfDay;

constexpr std::int64_t startOfYear(int year) {
  return seconds(sys_days(std::chrono::year(year) / 1 / 1).time_since_epoch()).count();
}

std::tm localTime(std::int64_t instant) {
  const std::time_t time = instant;
  std::tm local{};
  localtime_r(&time, &local);
  return local;
}

struct ShiftedInstant {
  std::int64_t seconds = 0;  ///< since 1970
  std::int64_t years = 0;    ///< that were subtracted
};

/// Subtracts whole cycles from an instant whose year the system's calendar may not support. The years from 1
/// to 9999 are not affected in any time zone.
ShiftedInstant withinTheCalendar(std::int64_t instant) {
  if (instant >= startOfYear(0) && instant < startOfYear(10001)) return {.seconds = instant};
  const std::int64_t rest = instant % secondsOfCycle;
  const std::int64_t cycles = instant / secondsOfCycle;
  if (rest < 0) return {.seconds = rest + secondsOfCycle, .years = (cycles - 1) * yearsOfCycle};
  return {.seconds = rest, .years = cycles * yearsOfCycle};
}

/// The seconds since 1970 on a clock that shows these fields and is set to UTC.
std::int64_t clockSeconds(sys_days day, int hour, int minute, int second) {
  return (seconds(day.time_since_epoch()) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
          seconds(second))
      .count();
}

/// How far the local clock is ahead of an instant.
std::int64_t offsetAt(std::int64_t instant) {
  const std::tm local = localTime(instant);
  const auto day = std::chrono::year(local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday;
  return clockSeconds(day, local.tm_hour, local.tm_min, local.tm_sec) - instant;
}

/// The instant within the two days around `near` at which the clock changes, found by the change of its
/// offset.
std::int64_t endOfGap(std::int64_t near) {
  std::int64_t before = near - secondsOfDay;
  std::int64_t after = near + secondsOfDay;
  const std::int64_t offsetAfter = offsetAt(after);
  while (after - before > 1) {
    const std::int64_t middle = before + (after - before) / 2;
    (offsetAt(middle) == offsetAfter ? after : before) = middle;
  }
  return after;
}

/// The instant at which the local clock shows what a clock on UTC shows at `clock`.
std::int64_t instantOf(std::int64_t clock) {
  for (const std::int64_t near : {clock - secondsOfDay, clock + secondsOfDay}) {
    const std::int64_t instant = clock - offsetAt(near);
    if (instant + offsetAt(instant) == clock) return instant;
  }
  return endOfGap(clock);
}

/// The number of the given width at a position of the text; -1 if there are other bytes than digits.
int numberAt(std::string_view text, std::size_t position, std::size_t width) {
  int number = 0;
  for (const char c : text.substr(position, width)) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

std::optional<std::int64_t> readClock(std::string_view text) {
  if (text.size() != 19 || text[4] != ':' || text[7] != ':' || text[10] != ' ' || text[13] != ':' ||
      text[16] != ':') {
    return std::nullopt;
  }
  const int year = numberAt(text, 0, 4);
  const int month = numberAt(text, 5, 2);
  const int day = numberAt(text, 8, 2);
  const int hour = numberAt(text, 11, 2);
  const int minute = numberAt(text, 14, 2);
  const int second = numberAt(text, 17, 2);
  const auto date = std::chrono::year(year) / month / day;
  if (year < 1 || month < 1 || day < 1 || !date.ok()) return std::nullopt;
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
  return clockSeconds(date, hour, minute, second);
}

}  // namespace

void refreshTimeZone() { tzset(); }

DateParts splitDate(Date date) {
  const ShiftedInstant instant = withinTheCalendar(date.seconds);
  const std::tm local = localTime(instant.seconds);
  return {.year = local.tm_year + 1900 + instant.years,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec,
          .weekday = local.tm_wday + 1};
}

std::optional<Date> parseLocalTime(std::string_view text) {
  const auto clock = readClock(text);
  if (!clock) return std::nullopt;
  return Date{.seconds = instantOf(*clock)};
}

}  // namespace kestrova
