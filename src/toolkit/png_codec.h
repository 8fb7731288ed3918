#pragma once

#include "platform/bytes.h"

#include <QImage>
#include <optional>

namespace kestrova {

/// The PNG's pixels, 8 or 16 bits a sample as in the file. Null when it does not decode completely.
QImage decodePng(ByteView file);

/// Nothing when the picture is null.
std::optional<Bytes> encodePng(const QImage& image);

}  // namespace kestrova
