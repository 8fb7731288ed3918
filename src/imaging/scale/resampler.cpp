#include "imaging/scale/resampler.h"

#include "imaging/base/image_error.h"
#include "imaging/scale/resampler_kernels.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kestrova::imaging {

namespace {

/// Source rows that the ring has to hold: those that one result row needs.
int rowsHeld(const LanczosAxis& axis) {
  int most = 1;
  for (int i = 0; i < axis.resultCount(); ++i) most = std::max(most, axis.count(i));
  return most;
}

}  // namespace

Resampler::Resampler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout,
                     const Stopped& stopped)
    : x_(x, stopped),
      y_(y, stopped),
      layout_(layout),
      paddedWidth_(static_cast<std::size_t>(x_.sourceCount() + x_.taps())),
      sourceRow_(channels() * paddedWidth_) {
  const auto rows = static_cast<std::size_t>(rowsHeld(y_));
  const std::size_t resultRow = channels() * static_cast<std::size_t>(x_.resultCount());
  requireMemory((sourceRow_ * (rows + 1) + resultRow) * sizeof(float));
  ring_.resize(sourceRow_ * rows);
  blended_.resize(sourceRow_);
  result_.resize(resultRow);
  rows_.resize(rows);
}

float* Resampler::ringRow(int sourceRow) {
  return ring_.data() + static_cast<std::size_t>(sourceRow) % rows_.size() * sourceRow_;
}

void Resampler::push(const void* row) {
  if (layout_.bytesPerSample == 1) {
    separate(static_cast<const std::uint8_t*>(row), ringRow(pushed_));
  } else {
    separate(static_cast<const std::uint16_t*>(row), ringRow(pushed_));
  }
  ++pushed_;
}

bool Resampler::pull(void* row) {
  if (pulled_ == y_.resultCount() || y_.first(pulled_) + y_.count(pulled_) > pushed_) return false;
  const int count = y_.count(pulled_);
  for (int k = 0; k < count; ++k) rows_[static_cast<std::size_t>(k)] = ringRow(y_.first(pulled_) + k);
  kernels::blendRows({.rows = rows_.data(), .weights = y_.weights(pulled_), .count = count}, blended_.data(),
                     sourceRow_);
  const auto width = static_cast<std::size_t>(x_.resultCount());
  for (std::size_t c = 0; c < channels(); ++c) {
    kernels::filterRow(blended_.data() + c * paddedWidth_, x_, result_.data() + c * width);
  }
  if (layout_.bytesPerSample == 1) {
    interleave(static_cast<std::uint8_t*>(row));
  } else {
    interleave(static_cast<std::uint16_t*>(row));
  }
  ++pulled_;
  return true;
}

template <class Sample>
void Resampler::separate(const Sample* row, float* planes) {
  const auto width = static_cast<std::size_t>(x_.sourceCount());
  if (layout_.channels == 1) {
    kernels::widen(row, width, planes);
    return;
  }
  for (std::size_t c = 0; c < channels(); ++c) {
    float* plane = planes + c * paddedWidth_;
    for (std::size_t i = 0; i < width; ++i) plane[i] = static_cast<float>(row[i * channels() + c]);
  }
  if (!layout_.alpha) return;
  constexpr float opaque = std::numeric_limits<Sample>::max();
  const float* alpha = planes + (channels() - 1) * paddedWidth_;
  for (std::size_t c = 0; c + 1 < channels(); ++c) {
    float* plane = planes + c * paddedWidth_;
    for (std::size_t i = 0; i < width; ++i) plane[i] *= alpha[i] / opaque;
  }
}

template <class Sample>
void Resampler::interleave(Sample* row) {
  const auto width = static_cast<std::size_t>(x_.resultCount());
  if (layout_.channels == 1) {
    kernels::narrow(result_.data(), width, row);
    return;
  }
  constexpr float opaque = std::numeric_limits<Sample>::max();
  const float* alpha = result_.data() + (channels() - 1) * width;
  for (std::size_t c = 0; c < channels(); ++c) {
    const float* plane = result_.data() + c * width;
    const bool multiplied = layout_.alpha && c + 1 < channels();
    for (std::size_t i = 0; i < width; ++i) {
      const float value = !multiplied ? plane[i] : alpha[i] > 0 ? plane[i] * opaque / alpha[i] : 0;
      row[i * channels() + c] = static_cast<Sample>(std::clamp(value, 0.0F, opaque) + 0.5F);
    }
  }
}

}  // namespace kestrova::imaging
