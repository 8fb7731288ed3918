#include "execution/photo_rewriting.h"

#include "planning/operation_decision.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {

namespace {

using imaging::PixelSize;

PictureSize pictureSize(const imaging::ImageSize& size, bool upright) {
  const PixelSize pixels = upright ? size.upright() : size.stored;
  return {static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
}

bool isSmall(const PictureSize& picture) {
  return picture.width < smallestPhotoSide || picture.height < smallestPhotoSide;
}

std::int64_t wholePixels(double side) { return std::max<std::int64_t>(1, std::llround(side)); }

imaging::RewriteRequest requestFor(const PictureSize& picture, const RewriteWishes& wishes) {
  imaging::RewriteRequest request{.size = {}, .upright = wishes.upright};
  const auto* row = rowOf(wishes.resolution);
  if (row == nullptr || !row->frame) return request;
  const PictureSize fitted = fitIntoFrame(picture, *row->frame);
  if (fitted != picture) request.size = PixelSize{wholePixels(fitted.width), wholePixels(fitted.height)};
  return request;
}

}  // namespace

tl::expected<Rewriting, imaging::RewriteError> rewritingOf(ByteView photo, const RewriteWishes& wishes,
                                                           const imaging::Stopped& stopped) {
  const auto measured = imaging::measurePhoto(photo);
  if (!measured) return tl::unexpected(measured.error());
  Rewriting rewriting{.size = pictureSize(measured->size, wishes.upright)};
  rewriting.isLeftOut = wishes.leavesOutSmall && isSmall(rewriting.size);

  // A photo that keeps its pixels is decoded as well: that shows whether a small file is a photo.
  const auto request = rewriting.isLeftOut ? imaging::RewriteRequest() : requestFor(rewriting.size, wishes);
  auto rewritten = imaging::rewritePhoto(photo, *measured, request, stopped);
  if (!rewritten) return tl::unexpected(rewritten.error());
  if (rewriting.isLeftOut) return rewriting;
  rewriting.isResized = request.size.has_value();
  rewriting.photo = std::move(*rewritten);
  return rewriting;
}

}  // namespace kestrova
