#pragma once

#include "imaging/photo_rewrite.h"
#include "platform/bytes.h"

#include <QImage>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Decodes whole pictures from a file's bytes and encodes them, with the codecs that rewrite photos. JPEG and
/// PNG keep their colour space; TIFF has 8 bits a sample. Pure, and callable from any thread; nothing is
/// written to standard error.
namespace kestrova {

/// Whether a picture of this size may be decoded or made: its pixels stay within the bounds of
/// image_limits.h. Decoding takes at most about three times as much memory.
bool isDecodableSize(std::int64_t width, std::int64_t height, int bytesPerPixel);

/// The first picture in a JPEG, PNG or TIFF file (recognised by its content), as its pixels are stored. Null
/// when there is none, or when it does not decode completely and without a warning.
QImage decodeImage(ByteView file);

/// All pictures of the file, turned upright by its stored orientation; none when one of them does not decode.
std::vector<QImage> decodeImagesUpright(ByteView file);

/// The preview that the photo's Exif block holds, as its pixels are stored; null when it has none that can be
/// decoded.
QImage decodeEmbeddedThumbnail(ByteView file);

/// The picture as it should be seen, by the orientation stored in `file` (TIFF 6.0 Orientation).
QImage turnedUpright(const QImage& stored, ByteView file);

/// How a picture is written. Only JPEG uses it: 0.0 is the smallest file, 1.0 the best quality.
struct EncodingProperties {
  float compressionFactor = 0.9F;
};

/// A file's bytes; nothing when the picture is null or too large for the type. JPEG has no transparency:
/// transparent pixels become white.
std::optional<Bytes> encodeImage(const QImage& image, imaging::ImageType type,
                                 EncodingProperties properties = {});

/// One TIFF file with a page for each picture; nothing when there is none or one of them is null.
std::optional<Bytes> encodeTiff(std::span<const QImage> images);

}  // namespace kestrova
