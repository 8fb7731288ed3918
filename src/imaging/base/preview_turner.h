#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace kestrova::imaging {

/// Turns a preview with its photo, in place. Returns how many of its bytes the preview now takes up; 0,
/// without any change, if it cannot be turned.
using PreviewTurner = std::function<std::size_t(std::span<std::uint8_t> preview)>;

}  // namespace kestrova::imaging
