#pragma once

#include "model/picture_size.h"

#include <QtGlobal>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrova {

// What the user chooses from lists. Each option has one table with everything that the program says about it.
// A value is its index in that table, in the list that the user sees and in the settings; `none` is a list
// without a selection.

enum class Media { photosAndVideos, photos, videos, none = -1 };
enum class PhotoFormats { jpeg, jpegTiff, jpegTiffPng, none = -1 };
enum class FolderFormat { longName, mediumName, shortName, none = -1 };
enum class Resolution { original, fit720p, fit1080p, none = -1 };

struct OptionRow {
  const char* label;      ///< in the list: English, to be translated in the context "Items"
  std::string_view word;  ///< on the command line
};

inline constexpr std::array mediaTable{
    OptionRow{.label = QT_TRANSLATE_NOOP("Items", "Photos and videos"), .word = "all"},
    OptionRow{.label = QT_TRANSLATE_NOOP("Items", "Photos only"), .word = "photos"},
    OptionRow{.label = QT_TRANSLATE_NOOP("Items", "Videos only"), .word = "videos"},
};

struct PhotoFormatsRow {
  const char* label;
  std::string_view word;
  const char16_t* extensions;  ///< of the files that count as photos, between commas
};

inline constexpr std::array photoFormatsTable{
    PhotoFormatsRow{
        .label = QT_TRANSLATE_NOOP("Items", "JPEG"), .word = "jpeg", .extensions = u"(,jpg,jpeg,)"},
    PhotoFormatsRow{.label = QT_TRANSLATE_NOOP("Items", "JPEG and TIFF"),
                    .word = "jpeg+tiff",
                    .extensions = u"(,jpg,jpeg,tiff,tif,)"},
    PhotoFormatsRow{.label = QT_TRANSLATE_NOOP("Items", "JPEG, TIFF and PNG"),
                    .word = "jpeg+tiff+png",
                    .extensions = u"(,jpg,jpeg,tiff,tif,png,)"},
};

// Samples of folder names, which are English in every language.
inline constexpr std::array folderFormatTable{
    OptionRow{.label = "2014/05/21-May-2014 Wednesday", .word = "long"},
    OptionRow{.label = "2014/05/21-May Wednesday", .word = "medium"},
    OptionRow{.label = "2014/05/21", .word = "short"},
};

struct ResolutionRow {
  const char* label;
  std::string_view word;
  std::optional<PictureSize> frame;  ///< that photos must fit into, in pixels
  const char* status;                ///< shown while photos are rewritten; %1 is the number of the photo
};

inline constexpr std::array resolutionTable{
    ResolutionRow{.label = QT_TRANSLATE_NOOP("Items", "Original size"),
                  .word = "original",
                  .frame = std::nullopt,
                  .status = QT_TRANSLATE_NOOP("Controller", "Rotating photo %1")},
    ResolutionRow{.label = QT_TRANSLATE_NOOP("Items", "720P (1280 x 720)"),
                  .word = "720p",
                  .frame = PictureSize{1280, 720},
                  .status = QT_TRANSLATE_NOOP("Controller", "Resizing photo %1 for 720P")},
    ResolutionRow{.label = QT_TRANSLATE_NOOP("Items", "1080P (1920 x 1080)"),
                  .word = "1080p",
                  .frame = PictureSize{1920, 1080},
                  .status = QT_TRANSLATE_NOOP("Controller", "Resizing photo %1 for 1080P")},
};

constexpr const auto& tableOf(Media) { return mediaTable; }
constexpr const auto& tableOf(PhotoFormats) { return photoFormatsTable; }
constexpr const auto& tableOf(FolderFormat) { return folderFormatTable; }
constexpr const auto& tableOf(Resolution) { return resolutionTable; }

/// The option at an index; `none` for an index outside the table.
template <typename Option>
constexpr Option optionAt(std::int64_t index) {
  const auto size = static_cast<std::int64_t>(tableOf(Option()).size());
  return index >= 0 && index < size ? static_cast<Option>(index) : Option::none;
}

template <typename Option>
constexpr int indexOf(Option option) {
  return static_cast<int>(option);
}

/// The option's line in the table; null for `none`.
template <typename Option>
constexpr auto rowOf(Option option) {
  const auto& table = tableOf(option);
  return option == Option::none ? nullptr : &table[static_cast<std::size_t>(option)];
}

}  // namespace kestrova
