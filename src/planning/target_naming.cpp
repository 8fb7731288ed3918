#include "planning/target_naming.h"

#include "platform/file_url.h"

#include <QString>
#include <cstdio>

namespace kestrova {

namespace {

template <typename... Values>
std::string formatted(const char* format, Values... values) {
  char text[160];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

long long yearOf(const DateParts& date) { return date.year; }

std::string lastComponent(FolderFormat format, const DateParts& date, const std::string& month,
                          const std::string& day) {
  if (format == FolderFormat::longName) {
    return formatted("%02d-%s-%04lld %s", date.day, month.c_str(), yearOf(date), day.c_str());
  }
  return formatted("%02d-%s %s", date.day, month.c_str(), day.c_str());
}

// The last one has no underscore, as users have trees full of such names.
std::string prefixOf(MediaKind kind) {
  switch (kind) {
    case MediaKind::photo:
      return "PHOTO_";
    case MediaKind::video:
      return "VIDEO_";
    case MediaKind::other:
      break;
  }
  return "FILE";
}

}  // namespace

NameTable englishMonths() {
  return {"January", "February", "March",     "April",   "May",      "June",
          "July",    "August",   "September", "October", "November", "December"};
}

NameTable englishDays() {
  return {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
}

std::optional<std::string> datedFolder(FolderFormat format, const DateParts& date, const NameTable& months,
                                       const NameTable& days) {
  if (format == FolderFormat::none) return std::nullopt;
  const std::string year = formatted("%04lld", yearOf(date));
  const std::string month = formatted("%02d", date.month);
  if (format == FolderFormat::shortName) return year + '/' + month + '/' + formatted("%02d", date.day);
  const std::string last = lastComponent(format, date, months.at(static_cast<std::size_t>(date.month - 1)),
                                         days.at(static_cast<std::size_t>(date.weekday - 1)));
  return year + '/' + removingPercentEncoding(month) + '/' + removingPercentEncoding(last);
}

std::string targetFileName(MediaKind kind, const DateParts& date, std::uint64_t size,
                           std::string_view extension) {
  const std::string name = prefixOf(kind) +
                           formatted("%04lld%02d%02d%02d%02d%02d_", yearOf(date), date.month, date.day,
                                     date.hour, date.minute, date.second) +
                           std::to_string(size) + '.';
  return (QString::fromStdString(name) + QString::fromUtf8(extension).toUpper()).toUpper().toStdString();
}

}  // namespace kestrova
