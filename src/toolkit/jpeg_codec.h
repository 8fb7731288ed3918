#pragma once

#include "platform/bytes.h"

#include <QImage>
#include <optional>

namespace kestrova {

/// The JPEG's pixels as stored: grey ones stay grey, CMYK becomes RGB. Null when it does not decode without a
/// warning.
QImage decodeJpeg(ByteView file);

/// Quality from 0.0 to 1.0; the best quality keeps the colours at full resolution. Nothing when the picture
/// is null or has a side above 65,500 pixels.
std::optional<Bytes> encodeJpeg(const QImage& image, float quality);

}  // namespace kestrova
