#include "imaging/png/png_rewrite.h"

#include "imaging/base/begins_with.h"
#include "imaging/base/image_error.h"
#include "imaging/exif/exif_block.h"
#include "imaging/exif/exif_patch.h"
#include "imaging/exif/xmp_patch.h"
#include "imaging/png/png_chunks.h"
#include "imaging/png/png_library.h"
#include "imaging/png/png_properties.h"
#include "imaging/scale/raster_scaler.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrova::imaging {

namespace {

/// Adobe's XMP in PNG: this keyword, flags and the packet, which is not compressed.
constexpr std::string_view xmpKeyword("XML:com.adobe.xmp\0", 18);

constexpr std::size_t densityBytes = 9;  ///< four across, four down, and the unit

void append(Bytes& to, ByteView bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

bool isAnimated(ByteView file) {
  bool found = false;
  visitPngChunks(file, [&](const PngChunk& chunk) { found |= chunk.type == "acTL"; });
  return found;
}

/// The result's pixels, and how the source's were stored.
struct Picture {
  PngFormat source;
  PngPicture result;
};

Picture decodePicture(ByteView file, const RewritePlan& plan) {
  PngDecoder decoder(file);
  const PngFormat source = decoder.format();
  if (source.size != plan.source) throw ImageError("the PNG's headers contradict each other");
  if (plan.scales()) decoder.expand();
  PngFormat format = decoder.format();
  requireAffordable(plan, format.pixelBytes());
  const PixelLayout layout{.channels = format.channels(),
                           .bytesPerSample = format.bitDepth == 16 ? 2 : 1,
                           .alpha = (format.colorType & PNG_COLOR_MASK_ALPHA) != 0};
  RasterScaler scaler(plan, layout);
  decoder.decode([&](const std::uint8_t* row) { scaler.push(row); }, plan.stopped);
  format.size = plan.result();
  return {.source = source,
          .result = {.format = format,
                     .palette = decoder.palette(),
                     .raster = reoriented(scaler.take(), plan.reorientation, plan.stopped)}};
}

/// Converts a background colour to the new format; makes it empty if it is invalid.
void convertBackground(Bytes& data, const Picture& picture) {
  if (picture.source.colorType == PNG_COLOR_TYPE_PALETTE) {
    const bool isKnown = data.size() == 1 && data[0] < picture.result.palette.size();
    const png_color color = isKnown ? picture.result.palette[data[0]] : png_color{};
    data = isKnown ? Bytes{0, color.red, 0, color.green, 0, color.blue} : Bytes();
  } else if (picture.source.bitDepth < 8 && data.size() == 2) {
    const int largest = (1 << picture.source.bitDepth) - 1;
    data[1] = static_cast<std::uint8_t>((data[1] & largest) * 255 / largest);
  }
}

/// A chunk's data after the pixels' format has changed; empty if the chunk has lost its meaning.
Bytes converted(const PngChunk& chunk, const Picture& picture) {
  const bool hadPalette = picture.source.colorType == PNG_COLOR_TYPE_PALETTE;
  const bool gainedAlpha =
      ((picture.result.format.colorType & ~picture.source.colorType) & PNG_COLOR_MASK_ALPHA) != 0;
  Bytes data(chunk.data.begin(), chunk.data.end());
  if (chunk.type == "tRNS" || (hadPalette && (chunk.type == "PLTE" || chunk.type == "hIST"))) {
    data.clear();
  } else if (chunk.type == "bKGD") {
    convertBackground(data, picture);
  } else if (chunk.type == "sBIT" && gainedAlpha) {
    data.push_back(static_cast<std::uint8_t>(picture.result.format.bitDepth));
  }
  return data;
}

/// Updates a chunk to the new pixels; nothing if it does not describe them.
std::optional<Bytes> edited(const PngChunk& chunk, const MetadataEdit& edit) {
  Bytes result(chunk.data.begin(), chunk.data.end());
  if (chunk.type == "eXIf") {
    editExif(std::span(result).subspan(exifNameLength(chunk.data)), edit);
  } else if (chunk.type == "iTXt" && beginsWith(chunk.data, xmpKeyword)) {
    editXmp(result, edit);
  } else if (chunk.type == "pHYs" && edit.exif.exchangesAxes && chunk.length == densityBytes) {
    std::swap_ranges(result.begin(), result.begin() + 4, result.begin() + 4);
  } else {
    return std::nullopt;
  }
  return result;
}

/// Appends a chunk that holds no pixels.
void appendOther(Bytes& result, const PngChunk& chunk, const MetadataEdit& edit, const Picture* picture) {
  if (const auto changed = edited(chunk, edit)) {
    appendChunk(result, chunk.type, *changed);
    return;
  }
  const bool converts =
      picture != nullptr && (picture->result.format.colorType != picture->source.colorType ||
                             picture->result.format.bitDepth != picture->source.bitDepth);
  if (!converts) {
    append(result, chunk.whole);
    return;
  }
  const Bytes data = converted(chunk, *picture);
  if (!data.empty() || chunk.length == 0) appendChunk(result, chunk.type, data);
}

std::size_t leaveOutPreview(std::span<std::uint8_t>) { return 0; }

void appendAll(Bytes& result, ByteView png, std::string_view type) {
  visitPngChunks(png, [&](const PngChunk& chunk) {
    if (chunk.type == type) append(result, chunk.whole);
  });
}

/// Replaces the source's header and pixels by those of `pixels`.
Bytes joinPng(ByteView file, ByteView pixels, const MetadataEdit& edit, const Picture* picture) {
  Bytes result(pngSignature.begin(), pngSignature.end());
  ByteView rest = file;
  bool pixelsWritten = false;
  MetadataEdit remainingEdit = edit;
  visitPngChunks(file, [&](const PngChunk& chunk) {
    throwIfStopped(edit.stopped);
    rest = file.subspan(static_cast<std::size_t>(chunk.whole.data() + chunk.whole.size() - file.data()));
    if (chunk.type == "IHDR") {
      appendAll(result, pixels, "IHDR");
    } else if (chunk.type != "IDAT") {
      appendOther(result, chunk, remainingEdit, picture);
      // There should be one eXIf chunk; a thousand previews would take a thousand times as long.
      if (chunk.type == "eXIf" && edit.turnPreview) remainingEdit.turnPreview = leaveOutPreview;
    } else if (!std::exchange(pixelsWritten, true)) {
      appendAll(result, pixels, "IDAT");
    }
  });
  append(result, rest);
  return result;
}

}  // namespace

PixelSize pngSize(ByteView file) {
  const PhotoProperties properties = readPngProperties(file);
  return {properties.pixelWidth.value_or(0), properties.pixelHeight.value_or(0)};
}

Bytes rewritePng(ByteView file, const RewritePlan& plan, const MetadataEdit& edit) {
  requireWholePng(file, plan.stopped);
  if (plan.keepsPixels()) {
    PngDecoder(file).decode([](const std::uint8_t*) {}, plan.stopped);
    return joinPng(file, file, edit, nullptr);
  }
  if (isAnimated(file)) throw ImageError("the PNG is an animation");
  const Picture picture = decodePicture(file, plan);
  return joinPng(file, encodePng(picture.result, plan.stopped), edit, &picture);
}

}  // namespace kestrova::imaging
