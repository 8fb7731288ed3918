#include "imaging/png/png_rewrite.h"

#include "imaging/base/byte_reader.h"
#include "imaging/base/image_error.h"
#include "imaging/exif/exif_patch.h"
#include "imaging/exif/xmp_patch.h"
#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/jpeg/jpeg_rewrite.h"
#include "imaging/png/png_chunks.h"
#include "imaging/png/png_library.h"
#include "imaging/scale/raster_scaler.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrova::imaging {

namespace {

using Chunks = std::vector<PngChunk>;

/// Adobe's XMP in PNG: this keyword, flags and the packet, which is not compressed.
constexpr std::string_view xmpKeyword("XML:com.adobe.xmp\0", 18);

constexpr std::size_t densityBytes = 9;  ///< four across, four down, and the unit

void append(Bytes& to, ByteView bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

/// The file with nothing in it but what the pixels depend on: a flaw in a comment is none in the picture.
Bytes pixelChunks(ByteView file, const Chunks& chunks) {
  Bytes result(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(chunks.front().offset));
  for (const auto& chunk : chunks) {
    if (chunk.isCritical() || chunk.type == "tRNS") append(result, file.subspan(chunk.offset, chunk.size()));
  }
  return result;
}

bool isAnimated(const Chunks& chunks) {
  return std::ranges::any_of(chunks, [](const PngChunk& chunk) { return chunk.type == "acTL"; });
}

/// The result's pixels, and what they and the source's are like.
struct Picture {
  PngFormat source;
  PngFormat format;
  std::vector<png_color> palette;
  Raster raster;
};

Picture decodePicture(ByteView file, const RewritePlan& plan) {
  PngDecoder decoder(file);
  const PngFormat source = decoder.format();
  if (plan.scales()) decoder.expand();
  PngFormat format = decoder.format();
  requireAffordable(plan, format.pixelBytes());
  const PixelLayout layout{format.channels(), format.bitDepth == 16 ? 2 : 1,
                           (format.colorType & PNG_COLOR_MASK_ALPHA) != 0};
  RasterScaler scaler(wholeAxis(static_cast<int>(plan.source.width), static_cast<int>(plan.scaled.width)),
                      wholeAxis(static_cast<int>(plan.source.height), static_cast<int>(plan.scaled.height)),
                      layout);
  decoder.decode([&](const std::uint8_t* row) { scaler.push(row); });
  format.size = plan.result();
  return {source, format, decoder.palette(), reoriented(scaler.take(), plan.reorientation)};
}

/// A background colour in the new format; empty when it makes no sense.
Bytes convertBackground(ByteView data, const Picture& picture) {
  if (picture.source.colorType == PNG_COLOR_TYPE_PALETTE) {
    if (data.size() != 1 || data[0] >= picture.palette.size()) return {};
    const png_color& color = picture.palette[data[0]];
    return {0, color.red, 0, color.green, 0, color.blue};
  }
  Bytes result(data.begin(), data.end());
  if (picture.source.bitDepth < 8 && result.size() == 2) {
    const int largest = (1 << picture.source.bitDepth) - 1;
    result[1] = static_cast<std::uint8_t>((result[1] & largest) * 255 / largest);
  }
  return result;
}

/// A chunk's data where the pixels' format has changed; empty when the chunk has lost its meaning.
Bytes convert(const PngChunk& chunk, ByteView data, const Picture& picture) {
  const bool hadPalette = picture.source.colorType == PNG_COLOR_TYPE_PALETTE;
  const bool gainedAlpha =
      ((picture.format.colorType & ~picture.source.colorType) & PNG_COLOR_MASK_ALPHA) != 0;
  if (chunk.type == "tRNS" || (hadPalette && (chunk.type == "PLTE" || chunk.type == "hIST"))) return {};
  if (chunk.type == "bKGD") return convertBackground(data, picture);
  Bytes result(data.begin(), data.end());
  if (chunk.type == "sBIT" && gainedAlpha)
    result.push_back(static_cast<std::uint8_t>(picture.format.bitDepth));
  return result;
}

/// Makes what a chunk says follow the new pixels; nothing when it says nothing of them.
std::optional<Bytes> edited(const PngChunk& chunk, ByteView data, const MetadataEdit& edit) {
  Bytes result(data.begin(), data.end());
  if (chunk.type == "eXIf") {
    editExif(result, edit);
  } else if (chunk.type == "iTXt" && isNamed(data, xmpKeyword)) {
    editXmp(result, edit);
  } else if (chunk.type == "pHYs" && edit.exif.exchangesAxes && data.size() == densityBytes) {
    std::swap_ranges(result.begin(), result.begin() + 4, result.begin() + 4);
  } else {
    return std::nullopt;
  }
  return result;
}

/// Appends a chunk that holds no pixels.
void appendOther(Bytes& result, ByteView file, const PngChunk& chunk, const MetadataEdit& edit,
                 const Picture* picture) {
  const ByteView data = chunkData(file, chunk);
  if (const auto changed = edited(chunk, data, edit)) return appendChunk(result, chunk.type, *changed);
  const bool converts = picture != nullptr && (picture->format.colorType != picture->source.colorType ||
                                               picture->format.bitDepth != picture->source.bitDepth);
  if (!converts) return append(result, file.subspan(chunk.offset, chunk.size()));
  const Bytes converted = convert(chunk, data, *picture);
  if (!converted.empty() || chunk.length == 0) appendChunk(result, chunk.type, converted);
}

/// Puts the header and the pixels of `pixels` in the place of the source's.
Bytes joinPng(ByteView file, const Chunks& chunks, ByteView pixels, const RewritePlan& plan,
              const Picture* picture) {
  const Chunks newChunks = pngChunks(pixels);
  Bytes result(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(chunks.front().offset));
  const auto appendNew = [&](std::string_view type) {
    for (const auto& chunk : newChunks) {
      if (chunk.type == type) append(result, pixels.subspan(chunk.offset, chunk.size()));
    }
  };
  const MetadataEdit edit = metadataEdit(plan);
  bool pixelsWritten = false;
  for (const auto& chunk : chunks) {
    if (chunk.type == "IHDR") {
      appendNew("IHDR");
    } else if (!chunk.isPixels()) {
      appendOther(result, file, chunk, edit, picture);
    } else if (!std::exchange(pixelsWritten, true)) {
      appendNew("IDAT");
    }
  }
  append(result, file.subspan(chunks.back().offset + chunks.back().size()));
  return result;
}

}  // namespace

PixelSize pngSize(ByteView file) {
  constexpr std::size_t widthAt = 16;
  constexpr std::size_t heightAt = 20;
  const ByteReader reader(file, std::endian::big);
  const auto width = reader.at<std::uint32_t>(widthAt);
  const auto height = reader.at<std::uint32_t>(heightAt);
  if (!height) throw ImageError("the PNG is cut off");
  requireAffordable(*width, *height);
  return {*width, *height};
}

Bytes rewritePng(ByteView file, const RewritePlan& plan) {
  const Chunks chunks = pngChunks(file);
  const Bytes source = pixelChunks(file, chunks);
  if (plan.keepsPixels()) {
    PngDecoder(source).decode([](const std::uint8_t*) {});
    return joinPng(file, chunks, file, plan, nullptr);
  }
  if (isAnimated(chunks)) throw ImageError("the PNG is an animation");
  const Picture picture = decodePicture(source, plan);
  return joinPng(file, chunks, encodePng(picture.format, picture.palette, picture.raster), plan, &picture);
}

}  // namespace kestrova::imaging
