#pragma once

#include "model/date_parts.h"
#include "platform/date.h"

#include <optional>
#include <string_view>

namespace kestrova {

/// Reads the user's time zone, which may have changed. It is then used until the next call.
void refreshTimeZone();

/// Splits any date in the user's time zone (Gregorian calendar).
DateParts splitDate(Date date);

/// Reads a local time of the form "yyyy:MM:dd HH:mm:ss", all of it and nothing else; nothing for any other
/// text or for a date that the calendar does not have. A time that a clock change skipped becomes the first
/// instant after the gap; of a repeated one, the first counts.
std::optional<Date> parseLocalTime(std::string_view text);

}  // namespace kestrova
