#include "imaging/jpeg_rewrite.h"

#include "imaging/image_error.h"
#include "imaging/jpeg_encoder.h"
#include "imaging/jpeg_metadata.h"
#include "imaging/jpeg_outline.h"
#include "imaging/jpeg_planes.h"
#include "imaging/jpeg_turn.h"

#include <algorithm>

namespace kestrova::imaging {

namespace {

constexpr int scaledQuality = 90;
/// For pixels that only were turned: close enough that the eye finds no difference.
constexpr int turnedQuality = 95;

JpegOutline readableOutline(ByteView file) {
  auto outline = outlineJpeg(file);
  if (!outline) throw ImageError("no whole JPEG");
  if (outline->scans > maxJpegScans) throw ImageError("the JPEG has too many scans");
  return *std::move(outline);
}

Bytes newPixels(ByteView file, const RewritePlan& plan) {
  JpegDecoder decoder(file);
  if (decoder.size() != plan.source) throw ImageError("the frame header contradicts itself");
  if (!plan.scales() && turnsLosslessly(decoder, plan.turn)) return turnCoefficients(decoder, plan.turn);
  JpegPlanes picture = decodePlanes(decoder, plan);
  return encodeJpeg(picture.format, picture.size, picture.planes,
                    plan.scales() ? scaledQuality : turnedQuality);
}

/// Turns a preview within its bytes, at the best quality that they have room for.
std::size_t turnPreview(std::span<std::uint8_t> preview, const Turn& turn) {
  try {
    const JpegOutline outline = readableOutline(preview);
    const PixelSize size = JpegDecoder(preview).size();
    const RewritePlan plan{size, size, turn, false};
    const auto fit = [&](ByteView pixels) -> std::size_t {
      const Bytes whole = joinJpeg(ByteView(preview).first(outline.imageEnd), outline, pixels, {});
      if (whole.size() > preview.size()) return 0;
      std::ranges::fill(std::ranges::copy(whole, preview.begin()).out, preview.end(), std::uint8_t{0});
      return whole.size();
    };
    if (const std::size_t length = fit(newPixels(preview, plan))) return length;
    JpegDecoder decoder(preview);
    JpegPlanes picture = decodePlanes(decoder, plan);
    for (const int quality : {90, 80, 70, 60}) {
      const std::size_t length = fit(encodeJpeg(picture.format, picture.size, picture.planes, quality));
      if (length > 0) return length;
    }
  } catch (const ImageError&) {
    // What cannot be decoded cannot be turned.
  }
  return 0;
}

}  // namespace

Bytes rewriteJpeg(ByteView file, const RewritePlan& plan) {
  const JpegOutline outline = readableOutline(file);
  JpegMetadataEdit edit;
  edit.exif = {plan.result(), plan.resetOrientation};
  if (plan.keepsPixels()) {
    verifyJpeg(file);
    Bytes result(file.begin(), file.end());
    patchJpeg(result, outline, edit.exif);
    return result;
  }
  const Bytes pixels = newPixels(file, plan);
  if (!plan.turn.isNone()) {
    edit.turnPreview = [&](std::span<std::uint8_t> preview) { return turnPreview(preview, plan.turn); };
  }
  return joinJpeg(file, outline, pixels, edit);
}

}  // namespace kestrova::imaging
