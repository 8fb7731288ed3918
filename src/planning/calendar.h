#pragma once

#include "platform/file_manager.h"

#include <optional>
#include <string_view>

namespace kestrova {

/// A date as the user's calendar and clock show it.
struct DateParts {
  int year = 0;
  int month = 0;  ///< 1 to 12
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int weekday = 0;  ///< 1 = Sunday to 7 = Saturday
  bool operator==(const DateParts&) const = default;
};

/// Splits a date in the user's time zone (Gregorian calendar).
DateParts splitDate(Date date);

/// Reads a local time of the form "yyyy:MM:dd HH:mm:ss", all of it and nothing else; nothing for any other
/// text or a date that the calendar does not have. A time that a clock change skipped becomes the first
/// instant after the gap.
std::optional<Date> parseLocalTime(std::string_view text);

}  // namespace kestrova
