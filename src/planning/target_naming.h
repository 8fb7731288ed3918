#pragma once

#include "model/date_parts.h"
#include "model/media_kind.h"
#include "model/options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova {

/// English names in every language: entry 0 is January, or Sunday.
using NameTable = std::vector<std::string>;
NameTable englishMonths();
NameTable englishDays();

/// The dated folder, relative to the target folder; nothing if no folder format is chosen.
std::optional<std::string> datedFolder(FolderFormat format, const DateParts& date, const NameTable& months,
                                       const NameTable& days);

/// Kind, time and size (bytes) as a file name in upper case: PHOTO_20140521134502_2345678.JPG
std::string targetFileName(MediaKind kind, const DateParts& date, std::uint64_t size,
                           std::string_view extension);

}  // namespace kestrova
