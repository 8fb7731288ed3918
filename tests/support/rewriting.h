#pragma once

#include "imaging/photo_rewrite.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <optional>
#include <string>

#include <gtest/gtest.h>

// Short names for what the tests of photo rewriting often do.

namespace kestrova::test {

inline bool contains(const Bytes& file, const Bytes& part) {
  return !std::ranges::search(file, part).empty();
}

/// Scaled to this size, neither turned nor its orientation changed.
inline imaging::RewriteRequest toSize(imaging::PixelSize size) { return {.size = size, .upright = false}; }
/// Scaled to this size, as it is seen when upright, and turned upright.
inline imaging::RewriteRequest toSizeUpright(imaging::PixelSize size) {
  return {.size = size, .upright = true};
}
inline constexpr imaging::RewriteRequest toUpright{.size = std::nullopt, .upright = true};
inline constexpr imaging::RewriteRequest asItIs{.size = std::nullopt, .upright = false};

/// The photo's size; an error where it cannot be measured.
inline tl::expected<imaging::ImageSize, imaging::RewriteError> sizeOf(ByteView file) {
  const auto photo = imaging::measurePhoto(file);
  if (!photo) return tl::unexpected(photo.error());
  return photo->size;
}

/// The photo measured and rewritten.
inline tl::expected<Bytes, imaging::RewriteError> rewritten(ByteView file,
                                                            const imaging::RewriteRequest& request) {
  const auto photo = imaging::measurePhoto(file);
  if (!photo) return tl::unexpected(photo.error());
  const auto result = imaging::rewritePhoto(file, *photo, request);
  if (!result) return tl::unexpected(result.error());
  return result->bytes;
}

/// The same; a failure of the test, and no bytes, if it is refused.
inline Bytes mustRewrite(const Bytes& file, const imaging::RewriteRequest& request) {
  const auto result = rewritten(file, request);
  if (!result) ADD_FAILURE() << result.error().reason;
  return result.value_or(Bytes());
}

inline Bytes scaled(const Bytes& photo, imaging::PixelSize size) { return mustRewrite(photo, toSize(size)); }
inline Bytes turnedUpright(const Bytes& photo) { return mustRewrite(photo, toUpright); }
inline Bytes rewrittenAsItIs(const Bytes& photo) { return mustRewrite(photo, asItIs); }

}  // namespace kestrova::test
