#pragma once

#include "model/date_parts.h"

#include <string_view>

namespace kestrova {

/// Where the date in a file's name comes from.
enum class DateOrigin {
  digitised,  ///< the photo's Exif digitising time
  modified,   ///< the file's modification time
  runStart,   ///< the file has no date at all
};

/// The origin's name in records.
constexpr std::string_view wordOf(DateOrigin origin) {
  switch (origin) {
    case DateOrigin::digitised:
      return "digitised";
    case DateOrigin::modified:
      return "modified";
    case DateOrigin::runStart:
      return "run-start";
  }
  return {};
}

/// The date in a file's name, in local time.
struct NamingDate {
  DateParts local;
  DateOrigin origin = DateOrigin::digitised;
  bool operator==(const NamingDate&) const = default;
};

}  // namespace kestrova
