#pragma once

#include "imaging/base/photo_properties.h"
#include "imaging/exif/tiff_reader.h"
#include "platform/bytes.h"

#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// What an Exif block, or a TIFF file, says about its photo.
struct ExifValues {
  PhotoProperties properties;  ///< the size: ImageWidth and ImageLength
  std::optional<std::int64_t> pixelXDimension;
  std::optional<std::int64_t> pixelYDimension;
};

/// Reads the first directory and the Exif directory that it names; no other is ever visited. Of several
/// entries of one kind the first valid one counts. The block may be cut off anywhere and hold anything.
/// Allocates nothing.
ExifValues readExif(ByteView block) noexcept;

/// Orientation and size (ImageWidth and ImageLength) of one directory.
PhotoProperties readDirectory(const TiffReader& tiff, std::uint64_t directory) noexcept;

/// Where the Exif directory is; 0 if the first directory names none.
std::uint64_t exifDirectoryOf(const TiffReader& tiff) noexcept;

/// Sets the number unless it is already set, or the new one is not between 1 and `largest`.
void takeNumber(std::optional<std::int64_t>& into, std::optional<std::int64_t> number,
                std::int64_t largest = INT64_MAX) noexcept;

}  // namespace kestrova::imaging
