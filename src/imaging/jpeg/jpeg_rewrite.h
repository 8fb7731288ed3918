#pragma once

#include "imaging/base/preview_turner.h"
#include "imaging/base/rewrite_plan.h"
#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrova::imaging {

/// The pixel size that the frame header states, as a decoder takes it. Throws ImageError.
PixelSize jpegSize(ByteView file);

/// The JPEG rewritten by the plan. Pixels that keep their size are turned without loss where that is
/// possible, and keep their exact bytes if they are not turned; others are scaled plane by plane in the
/// colour space of the source. Every application segment and comment passes through byte for byte, except the
/// tags and previews that no longer match the pixels. Throws ImageError when the file does not decode without
/// a warning, and Interrupted.
Bytes rewriteJpeg(ByteView file, const RewritePlan& plan, const MetadataEdit& edit);

/// Turns a JPEG within its bytes, in the best quality that fits, and fills the rest with zeros. Returns how
/// many bytes it now takes up; 0, without any change, if it does not decode or has more than `mostPixels`.
/// Throws Interrupted, without any change as well.
std::size_t turnJpegWithin(std::span<std::uint8_t> bytes, const Reorientation& reorientation,
                           std::int64_t mostPixels, const Stopped& stopped = {});

/// Turns previews as the plan turns the photo; empty when it does not turn it. A preview that is larger than
/// the photo, and than a million pixels, is not turned: that would take too long.
PreviewTurner previewTurner(const RewritePlan& plan);

}  // namespace kestrova::imaging
