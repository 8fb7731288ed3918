#pragma once

#include "model/media_kind.h"
#include "model/options.h"
#include "planning/calendar.h"
#include "platform/file_manager.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrova {

/// English names, whatever the user's language: entry 0 is January, or Sunday.
using NameTable = std::vector<std::string>;
NameTable englishMonths();
NameTable englishDays();

/// The dated folder below `target`; nothing where no folder format is chosen.
std::optional<Path> targetFolder(const Path& target, FolderFormat format, const DateParts& date,
                                 const NameTable& months, const NameTable& days);

/// Kind, time and size (bytes) as a file name in upper case: PHOTO_20140521134502_2345678.JPG
std::string targetFileName(MediaKind kind, const DateParts& date, std::uint64_t size,
                           const QString& extension);

}  // namespace kestrova
