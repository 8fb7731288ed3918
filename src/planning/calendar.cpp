#include "planning/calendar.h"

#include <ctime>

namespace kestrova {

namespace {

using std::chrono::seconds;

std::tm localTime(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  return local;
}

std::time_t secondsOf(Date date) { return std::chrono::floor<seconds>(date).time_since_epoch().count(); }

/// The number of the given width at the text's position; -1 where other bytes than digits stand.
int numberAt(std::string_view text, std::size_t position, std::size_t width) {
  int number = 0;
  for (const char c : text.substr(position, width)) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

std::optional<std::tm> readFields(std::string_view text) {
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
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  fields.tm_isdst = -1;
  return fields;
}

bool sameClock(const std::tm& a, const std::tm& b) {
  return a.tm_sec == b.tm_sec && a.tm_min == b.tm_min && a.tm_hour == b.tm_hour && a.tm_mday == b.tm_mday;
}

/// The instant at which the clock leaps within the two days around `near`, found by its change of offset from
/// UTC.
std::time_t endOfGap(std::time_t near) {
  constexpr std::time_t day = 86400;
  std::time_t before = near - day;
  std::time_t after = near + day;
  const long offsetAfter = localTime(after).tm_gmtoff;
  while (after - before > 1) {
    const std::time_t middle = before + (after - before) / 2;
    (localTime(middle).tm_gmtoff == offsetAfter ? after : before) = middle;
  }
  return after;
}

}  // namespace

DateParts splitDate(Date date) {
  const std::tm local = localTime(secondsOf(date));
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,    local.tm_hour,
          local.tm_min,         local.tm_sec,     local.tm_wday + 1};
}

std::optional<Date> parseLocalTime(std::string_view text) {
  const auto fields = readFields(text);
  if (!fields) return std::nullopt;
  std::tm normalised = *fields;
  std::time_t time = std::mktime(&normalised);
  if (!sameClock(localTime(time), *fields)) time = endOfGap(time);
  return Date(seconds(time));
}

}  // namespace kestrova
