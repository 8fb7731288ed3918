#include "imaging/jpeg/jpeg_planes.h"

#include "imaging/base/image_error.h"
#include "imaging/scale/raster_scaler.h"

#include <algorithm>
#include <utility>

namespace kestrova::imaging {

namespace {

/// The filter gets at least this many times the pixels of the result, or all there are. With fewer, the
/// decoder's scaling becomes visible: at 1.5 times, detailed photos are 1.5 decibels further from the
/// reference.
constexpr double headroom = 2;

int decodeScale(const RewritePlan& plan) {
  for (const int eighths : {1, 2, 4}) {
    const double scale = eighths / 8.0;
    if (static_cast<double>(plan.source.width) * scale >= headroom * static_cast<double>(plan.scaled.width) &&
        static_cast<double>(plan.source.height) * scale >=
            headroom * static_cast<double>(plan.scaled.height)) {
      return eighths;
    }
  }
  return 8;
}

/// Whether every decoder can be expected to read this sampling.
bool isCommon(const JpegFormat& format) {
  int blocks = 0;
  for (const auto& component : format.components) {
    if (format.maxHorizontal() % component.horizontal != 0 ||
        format.maxVertical() % component.vertical != 0) {
      return false;
    }
    blocks += component.horizontal * component.vertical;
  }
  return blocks <= C_MAX_BLOCKS_IN_MCU;
}

void setSampling(JpegFormat& format, int horizontal, int vertical) {
  for (auto& component : format.components) component.horizontal = component.vertical = 1;
  format.components.front().horizontal = horizontal;
  format.components.front().vertical = vertical;
}

/// The sampling to write. A smaller photo has a colour for every pixel, which subsampling would lose; at full
/// size the sampling stays. Four to one along a row becomes two by two, which keeps as many samples;
/// samplings that few decoders can read are not subsampled at all.
JpegFormat writableFormat(JpegFormat format, bool scales) {
  const bool fourToOne = format.components.size() == 3 && format.maxVertical() == 1 &&
                         format.components[0].horizontal == 4 && format.components[1].horizontal == 1 &&
                         format.components[2].horizontal == 1;
  if (fourToOne) setSampling(format, 2, 2);
  if (scales || format.components.size() == 1 || !isCommon(format)) setSampling(format, 1, 1);
  return format;
}

JpegFormat reoriented(JpegFormat format, const Reorientation& reorientation) {
  if (!reorientation.transpose) return format;
  for (auto& component : format.components) std::swap(component.horizontal, component.vertical);
  return format;
}

/// How many samples a component has for a number of samples of the largest component.
struct Sampling {
  int factor = 1;
  int max = 1;
};

/// One axis of a component, from the decoder to the encoder.
struct PlaneAxis {
  std::int64_t pixels = 0;  ///< of the photo
  std::int64_t scaledPixels = 0;
  int samples = 0;             ///< as decoded
  double samplesPerPixel = 1;  ///< as decoded, of the photo
  Sampling source;
  Sampling result;
  bool mirrored = false;  ///< after scaling
};

/// Whether decoders interpolate a component on that axis, and the result, which has it in full, should be
/// what they show. A plane that the decoder has shrunk is not interpolated.
bool isInterpolated(const PlaneAxis& axis) {
  return axis.result.factor == axis.result.max && axis.source.max == 2 * axis.source.factor &&
         axis.samplesPerPixel == 0.5;
}

/// Planes of subsampled components begin at the left of the upright picture. If the axis will be mirrored and
/// the picture ends within a sample, that sample sticks out on the stored left.
AxisMapping mappingOf(const PlaneAxis& axis) {
  const auto samples = static_cast<int>(planeExtent(axis.scaledPixels, axis.result.factor, axis.result.max));
  const auto scaledPixels = static_cast<double>(axis.scaledPixels);
  const double pixelsPerSample = static_cast<double>(axis.result.max) / axis.result.factor;
  const double step = static_cast<double>(axis.pixels) / scaledPixels * axis.samplesPerPixel;
  const double overhang = axis.mirrored ? samples * pixelsPerSample - scaledPixels : 0;
  return {.sourceCount = axis.samples,
          .resultCount = samples,
          .step = pixelsPerSample * step,
          .origin = -overhang * step,
          .interpolated = isInterpolated(axis)};
}

RasterScaler scalerFor(const JpegDecoder& decoder, const JpegFormat& format, std::size_t i,
                       const RewritePlan& plan) {
  const auto plane = decoder.plane(i);
  const JpegFormat source = decoder.format();
  const auto& from = source.components[i];
  const auto& to = format.components[i];
  const PlaneAxis across{.pixels = plan.source.width,
                         .scaledPixels = plan.scaled.width,
                         .samples = plane.width,
                         .samplesPerPixel = plane.samplesPerPixelX,
                         .source = {.factor = from.horizontal, .max = source.maxHorizontal()},
                         .result = {.factor = to.horizontal, .max = format.maxHorizontal()},
                         .mirrored = plan.reorientation.mirrorX};
  const PlaneAxis down{.pixels = plan.source.height,
                       .scaledPixels = plan.scaled.height,
                       .samples = plane.height,
                       .samplesPerPixel = plane.samplesPerPixelY,
                       .source = {.factor = from.vertical, .max = source.maxVertical()},
                       .result = {.factor = to.vertical, .max = format.maxVertical()},
                       .mirrored = plan.reorientation.mirrorY};
  return {mappingOf(across), mappingOf(down), PixelLayout{}, plan.stopped};
}

/// Throws ImageError unless the planes stay within the limits; while they are turned, there are two copies.
void requireRoom(const JpegFormat& format, const RewritePlan& plan) {
  std::int64_t bytes = 0;
  for (const auto& component : format.components) {
    bytes += planeExtent(plan.scaled.width, component.horizontal, format.maxHorizontal()) *
             planeExtent(plan.scaled.height, component.vertical, format.maxVertical());
  }
  requireMemory(static_cast<std::uint64_t>(plan.reorientation.isNone() ? bytes : 2 * bytes));
}

}  // namespace

JpegPlanes decodePlanes(JpegDecoder& decoder, const RewritePlan& plan) {
  if (plan.scaled.width > JPEG_MAX_DIMENSION || plan.scaled.height > JPEG_MAX_DIMENSION) {
    throw ImageError("the picture is too large for a JPEG");
  }
  const JpegFormat format = writableFormat(decoder.format(), plan.scales());
  requireRoom(format, plan);
  decoder.start(decodeScale(plan));
  std::vector<RasterScaler> scalers;
  for (std::size_t i = 0; i < format.components.size(); ++i)
    scalers.push_back(scalerFor(decoder, format, i, plan));
  decoder.decode([&](std::size_t component, const std::uint8_t* row) { scalers[component].push(row); });
  JpegPlanes result{.format = reoriented(format, plan.reorientation), .size = plan.result(), .planes = {}};
  for (auto& scaler : scalers)
    result.planes.push_back(reoriented(scaler.take(), plan.reorientation, plan.stopped));
  return result;
}

}  // namespace kestrova::imaging
