#pragma once

#include <cstdint>

namespace kestrova::imaging {

// What reading and writing one photo may cost. A photo that would need more counts as undecodable; its
// headers show that before any memory is allocated.

/// Most pixels a photo may have.
inline constexpr std::int64_t maxPixels = 1'000'000'000;

/// Most bytes a decoder may hold at a time, and most that the decoded pixels of one photo may take up.
inline constexpr std::int64_t maxWorkingBytes = 1'000'000'000;

/// Most bytes one row of decoded pixels may take up: decoders hold several.
inline constexpr std::int64_t maxRowBytes = 100'000'000;

/// Most scans of a progressive JPEG: real files have about ten, and each one is a pass over all pixels.
inline constexpr int maxJpegScans = 100;

}  // namespace kestrova::imaging
