#include "imaging/tiff/tiff_pixels.h"

#include "imaging/base/image_error.h"
#include "imaging/scale/raster_scaler.h"
#include "imaging/tiff/tiff_decoder.h"

#include <algorithm>
#include <utility>

namespace kestrova::imaging {

namespace {

/// Makes rows that can be filtered: colours instead of a palette, at least 8 bits a sample.
class RowExpander {
 public:
  explicit RowExpander(const TiffFormat& source) : source_(source), format_(source) {
    if (source.hasPalette()) {
      format_.photometric = PHOTOMETRIC_RGB;
      format_.samplesPerPixel = 3;
      format_.colorMap = {};
      shift_ = usesHighBytes() ? 8 : 0;
    }
    format_.bitsPerSample = std::max(source.bitsPerSample, 8);
    row_.resize(static_cast<std::size_t>(source.size.width) * static_cast<std::size_t>(format_.pixelBytes()));
  }

  const TiffFormat& format() const { return format_; }

  const std::uint8_t* expand(const std::uint8_t* row) {
    if (source_.hasPalette()) return lookUp(row);
    if (source_.bitsPerSample >= 8) return row;
    const int largest = (1 << source_.bitsPerSample) - 1;
    std::transform(row, row + row_.size(), row_.begin(), [largest](std::uint8_t sample) {
      return static_cast<std::uint8_t>(sample * 255 / largest);
    });
    return row_.data();
  }

 private:
  /// Some writers put 8 bits where 16 belong.
  bool usesHighBytes() const {
    return std::ranges::any_of(source_.colorMap, [](const auto& map) {
      return std::ranges::any_of(map, [](std::uint16_t value) { return value > 0xFF; });
    });
  }

  const std::uint8_t* lookUp(const std::uint8_t* row) {
    for (std::size_t i = 0; i < row_.size(); ++i) {
      row_[i] = static_cast<std::uint8_t>(source_.colorMap[i % 3][row[i / 3]] >> shift_);
    }
    return row_.data();
  }

  const TiffFormat& source_;
  TiffFormat format_;
  int shift_ = 8;
  Bytes row_;
};

PixelLayout layoutOf(const TiffFormat& format) {
  const bool alpha = format.extraSamples.size() == 1 && format.extraSamples[0] == EXTRASAMPLE_UNASSALPHA;
  return {format.samplesPerPixel, format.sampleBytes(), alpha};
}

}  // namespace

TiffPicture decodeTiff(ByteView file, std::uint64_t directory, const RewritePlan& plan) {
  TiffDecoder decoder(file, directory);
  if (decoder.format().size != plan.source) throw ImageError("the directory contradicts itself");
  RowExpander expander(decoder.format());
  TiffFormat format = plan.scales() ? expander.format() : decoder.format();
  requireAffordable(plan, format.pixelBytes());
  RasterScaler scaler(plan, layoutOf(format));
  const auto take = [&](const std::uint8_t* row) { scaler.push(plan.scales() ? expander.expand(row) : row); };
  decoder.decode(take, plan.stopped);
  format.size = plan.result();
  if (plan.reorientation.transpose) std::swap(format.resolution[0], format.resolution[1]);
  return {format, reoriented(scaler.take(), plan.reorientation, plan.stopped)};
}

void verifyTiff(ByteView file, std::uint64_t directory, const Stopped& stopped) {
  TiffDecoder(file, directory).decode([](const std::uint8_t*) {}, stopped);
}

}  // namespace kestrova::imaging
