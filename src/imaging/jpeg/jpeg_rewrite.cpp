#include "imaging/jpeg/jpeg_rewrite.h"

#include "imaging/base/image_error.h"
#include "imaging/jpeg/jpeg_encoder.h"
#include "imaging/jpeg/jpeg_metadata.h"
#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/jpeg/jpeg_planes.h"
#include "imaging/jpeg/jpeg_reorientation.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kestrova::imaging {

namespace {

constexpr int scaledQuality = 90;
/// For pixels that were only turned: so close that the difference is invisible.
constexpr int turnedQuality = 95;

/// The preview of a smaller photo may have this many pixels.
constexpr std::int64_t smallPhotoPixels = 1'000'000;

std::int64_t pixelsOf(const PixelSize& size) { return size.width * size.height; }

Bytes newPixels(ByteView file, const RewritePlan& plan) {
  std::optional<JpegDecoder> decoder(std::in_place, file, JpegDecoder::Options{.stopped = plan.stopped});
  if (decoder->size() != plan.source) throw ImageError("the frame header contradicts itself");
  if (!plan.scales() && reorientsLosslessly(*decoder, plan.reorientation))
    return reorientCoefficients(*decoder, plan);
  JpegPlanes picture = decodePlanes(*decoder, plan);
  decoder.reset();  // so that its memory and the encoder's are not held at the same time
  return encodeJpeg(picture, plan.scales() ? scaledQuality : turnedQuality, plan.stopped);
}

/// Replaces the pixels of a JPEG within its bytes; 0, without any change, if they do not fit.
std::size_t fitInto(std::span<std::uint8_t> bytes, const JpegOutline& outline, ByteView pixels) {
  const Bytes whole = joinJpeg(ByteView(bytes).first(outline.imageEnd), outline, pixels, {});
  if (whole.size() > bytes.size()) return 0;
  std::ranges::fill(std::ranges::copy(whole, bytes.begin()).out, bytes.end(), std::uint8_t{0});
  return whole.size();
}

/// Turns a JPEG within its bytes at decreasing quality, then at decreasing size.
std::size_t turnCoarsely(std::span<std::uint8_t> bytes, const JpegOutline& outline, RewritePlan plan) {
  for (const int divisor : {1, 2, 4, 8}) {
    plan.scaled = {std::max<std::int64_t>(1, plan.source.width / divisor),
                   std::max<std::int64_t>(1, plan.source.height / divisor)};
    JpegDecoder decoder(bytes, {.stopped = plan.stopped});
    JpegPlanes picture = decodePlanes(decoder, plan);
    for (const int quality : {90, 80, 70, 60}) {
      const Bytes pixels = encodeJpeg(picture, quality, plan.stopped);
      if (const std::size_t length = fitInto(bytes, outline, pixels)) return length;
    }
  }
  return 0;
}

}  // namespace

PixelSize jpegSize(ByteView file) { return JpegDecoder(file, {}).size(); }

Bytes rewriteJpeg(ByteView file, const RewritePlan& plan, const MetadataEdit& edit) {
  const JpegOutline outline = outlineJpeg(file);
  if (plan.keepsPixels()) {
    verifyJpeg(file, plan.stopped);
    Bytes result(file.begin(), file.end());
    patchJpeg(result, outline, edit.exif);
    return result;
  }
  return joinJpeg(file, outline, newPixels(file, plan), edit);
}

std::size_t turnJpegWithin(std::span<std::uint8_t> bytes, const Reorientation& reorientation,
                           std::int64_t mostPixels, const Stopped& stopped) {
  try {
    const JpegOutline outline = outlineJpeg(bytes);
    const PixelSize size = jpegSize(bytes);
    if (pixelsOf(size) > mostPixels) return 0;
    const RewritePlan plan{
        .source = size, .scaled = size, .reorientation = reorientation, .stopped = stopped};
    const std::size_t length = fitInto(bytes, outline, newPixels(bytes, plan));
    return length > 0 ? length : turnCoarsely(bytes, outline, plan);
  } catch (const ImageError&) {
    return 0;  // what cannot be decoded cannot be turned
  }
}

PreviewTurner previewTurner(const RewritePlan& plan) {
  if (plan.reorientation.isNone()) return {};
  const std::int64_t mostPixels = std::max(pixelsOf(plan.source), smallPhotoPixels);
  return [reorientation = plan.reorientation, mostPixels,
          stopped = plan.stopped](std::span<std::uint8_t> preview) {
    return turnJpegWithin(preview, reorientation, mostPixels, stopped);
  };
}

}  // namespace kestrova::imaging
