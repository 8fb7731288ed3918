#include "imaging/scale/resampler.h"

#include "imaging/base/image_error.h"
#include "imaging/scale/resampler_kernels.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kestrova::imaging {

namespace {

/// The last of the result rows that are computed with this one.
int lastOfPair(const LanczosAxis& axis, int row) { return std::min(row + 1, axis.resultCount() - 1); }

/// Source rows that the ring has to hold: those that two result rows need.
int rowsHeld(const LanczosAxis& axis) {
  int most = 1;
  for (int i = 0; i < axis.resultCount(); i += 2)
    most = std::max(most, axis.end(lastOfPair(axis, i)) - axis.first(i));
  return most;
}

std::size_t paddedWidth(const LanczosAxis& axis) {
  constexpr std::size_t unit = kernels::blendedTogether;
  return (static_cast<std::size_t>(axis.sourceCount()) + static_cast<std::size_t>(axis.taps()) + unit - 1) /
         unit * unit;
}

}  // namespace

Resampler::Resampler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout,
                     const Stopped& stopped)
    : x_(x, stopped),
      y_(y, stopped),
      layout_(layout),
      paddedWidth_(paddedWidth(x_)),
      sourceRow_(channels() * paddedWidth_),
      resultRow_(channels() * static_cast<std::size_t>(x_.resultCount())) {
  const auto rows = static_cast<std::size_t>(rowsHeld(y_));
  requireMemory((sourceRow_ * (rows + 2) + 2 * resultRow_) * sizeof(float));
  ring_.resize(sourceRow_ * rows);
  rows_.resize(rows);
  for (auto& weights : rowWeights_) weights.resize(rows);
  for (auto& row : blended_) row.resize(sourceRow_);
  for (auto& row : result_) row.resize(resultRow_);
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
  if (pulled_ == filtered_ && !filterNextRows()) return false;
  const float* planes = result_[static_cast<std::size_t>(pulled_ % 2)].data();
  if (layout_.bytesPerSample == 1) {
    interleave(planes, static_cast<std::uint8_t*>(row));
  } else {
    interleave(planes, static_cast<std::uint16_t*>(row));
  }
  ++pulled_;
  return true;
}

bool Resampler::filterNextRows() {
  if (filtered_ == y_.resultCount() || y_.end(lastOfPair(y_, filtered_)) > pushed_) return false;
  const int count = weighRows();
  kernels::blendRows(
      {.rows = rows_.data(), .weights = {rowWeights_[0].data(), rowWeights_[1].data()}, .count = count},
      {blended_[0].data(), blended_[1].data()}, sourceRow_);
  const auto width = static_cast<std::size_t>(x_.resultCount());
  for (std::size_t row = 0; row < blended_.size(); ++row) {
    for (std::size_t c = 0; c < channels(); ++c)
      kernels::filterRow(blended_[row].data() + c * paddedWidth_, x_, result_[row].data() + c * width);
  }
  filtered_ = lastOfPair(y_, filtered_) + 1;
  return true;
}

int Resampler::weighRows() {
  const int first = y_.first(filtered_);
  const int last = lastOfPair(y_, filtered_);
  const int count = y_.end(last) - first;
  for (int k = 0; k < count; ++k) rows_[static_cast<std::size_t>(k)] = ringRow(first + k);
  for (auto& weights : rowWeights_) std::ranges::fill(weights, 0.0F);
  for (int row = filtered_; row <= last; ++row) {
    std::copy_n(y_.weights(row), y_.count(row),
                rowWeights_[static_cast<std::size_t>(row - filtered_)].begin() + (y_.first(row) - first));
  }
  return count;
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
void Resampler::interleave(const float* planes, Sample* row) {
  const auto width = static_cast<std::size_t>(x_.resultCount());
  if (layout_.channels == 1) {
    kernels::narrow(planes, width, row);
    return;
  }
  constexpr float opaque = std::numeric_limits<Sample>::max();
  const float* alpha = planes + (channels() - 1) * width;
  for (std::size_t c = 0; c < channels(); ++c) {
    const float* plane = planes + c * width;
    const bool multiplied = layout_.alpha && c + 1 < channels();
    for (std::size_t i = 0; i < width; ++i) {
      const float value = !multiplied ? plane[i] : alpha[i] > 0 ? plane[i] * opaque / alpha[i] : 0;
      row[i * channels() + c] = static_cast<Sample>(std::clamp(value, 0.0F, opaque) + 0.5F);
    }
  }
}

}  // namespace kestrova::imaging
