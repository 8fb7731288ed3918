#pragma once

#include "imaging/base/image_size.h"
#include "imaging/base/photo_properties.h"
#include "imaging/base/rewrite_plan.h"
#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

#include <optional>

namespace kestrova::imaging {

enum class ImageType { jpeg, png, tiff };

/// What can be done with photos of one type. A new type needs a folder and an entry in the table.
struct PhotoFormat {
  ImageType type;
  /// Whether a file with these first bytes is of this type.
  bool (*isBeginning)(ByteView prefix) noexcept;
  PhotoProperties (*properties)(ByteView prefix) noexcept;
  /// The first Exif block: a TIFF structure; empty when there is none.
  ByteView (*exifBlock)(ByteView file) noexcept;
  /// Reads the headers. Throws ImageError.
  ImageSize (*measure)(ByteView file);
  /// Throws ImageError when the file does not decode whole and without a warning, and Interrupted.
  RewrittenPhoto (*rewrite)(ByteView file, const RewritePlan& plan, const MetadataEdit& edit);
};

/// The format of a file by its content; null when it is not one of these.
const PhotoFormat* formatOf(ByteView prefix) noexcept;

std::optional<ImageType> imageTypeOf(ByteView prefix) noexcept;

}  // namespace kestrova::imaging
