#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace kestrova::imaging {

/// Makes a preview over: changes it within its bytes and returns how many of them it takes up now, 0 when it
/// cannot be done; then the bytes are as they were.
using PreviewMaker = std::function<std::size_t(std::span<std::uint8_t> preview)>;

/// Has a JPEG made over; one that states an orientation of its own is shown by that and stays as it is. False
/// when it would have to be made over and cannot.
bool remakeJpeg(std::span<std::uint8_t> jpeg, const PreviewMaker& make);

/// Has every JPEG made over in this way that stands whole somewhere in the bytes, whoever put it there: a
/// camera's maker note, a FlashPix stream, what follows a picture. The first byte of a JPEG may be another
/// than 0xFF, as some cameras write it, and stays so. The bytes may hold anything; the work on them is
/// bounded.
void remakeEmbeddedJpegs(std::span<std::uint8_t> bytes, const PreviewMaker& make);

}  // namespace kestrova::imaging
