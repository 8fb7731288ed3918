#include "imaging/scale/resampler_kernels.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/scale/resampler_kernels.cpp"
#include <hwy/foreach_target.h>
// After foreach_target, which includes this file once for every instruction set.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kestrova::imaging::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class Sample>
HWY_INLINE void widenSamples(const Sample* samples, std::size_t count, float* result) {
  const hn::ScalableTag<float> floats;
  const hn::Rebind<std::int32_t, decltype(floats)> integers;
  const hn::Rebind<Sample, decltype(floats)> narrow;
  const std::size_t lanes = hn::Lanes(floats);
  std::size_t i = 0;
  for (; i + lanes <= count; i += lanes) {
    const auto wide = hn::PromoteTo(integers, hn::LoadU(narrow, samples + i));
    hn::StoreU(hn::ConvertTo(floats, wide), floats, result + i);
  }
  for (; i < count; ++i) result[i] = static_cast<float>(samples[i]);
}

template <class Sample>
HWY_INLINE void narrowValues(const float* values, std::size_t count, Sample* result) {
  const hn::ScalableTag<float> floats;
  const hn::Rebind<Sample, decltype(floats)> narrow;
  const std::size_t lanes = hn::Lanes(floats);
  const auto lowest = hn::Zero(floats);
  const auto highest = hn::Set(floats, static_cast<float>(hwy::LimitsMax<Sample>()));
  std::size_t i = 0;
  for (; i + lanes <= count; i += lanes) {
    const auto value = hn::Clamp(hn::LoadU(floats, values + i), lowest, highest);
    hn::StoreU(hn::DemoteTo(narrow, hn::NearestInt(value)), narrow, result + i);
  }
  for (; i < count; ++i) {
    result[i] =
        static_cast<Sample>(std::clamp(values[i], 0.0F, static_cast<float>(hwy::LimitsMax<Sample>())) + 0.5F);
  }
}

void widen8(const std::uint8_t* samples, std::size_t count, float* result) {
  widenSamples(samples, count, result);
}
void widen16(const std::uint16_t* samples, std::size_t count, float* result) {
  widenSamples(samples, count, result);
}
void narrow8(const float* values, std::size_t count, std::uint8_t* result) {
  narrowValues(values, count, result);
}
void narrow16(const float* values, std::size_t count, std::uint16_t* result) {
  narrowValues(values, count, result);
}

#if HWY_TARGET == HWY_SCALAR  // a processor without vectors of four floats

void filterRow(const float* source, const LanczosAxis& axis, float* result) {
  for (int i = 0; i < axis.resultCount(); ++i) {
    result[i] = 0;
    for (int k = 0; k < axis.count(i); ++k) result[i] += axis.weights(i)[k] * source[axis.first(i) + k];
  }
}

#else

using Four = hn::FixedTag<float, 4>;

HWY_INLINE hn::Vec<Four> weighedSum(Four four, const float* source, const float* weights, int taps) {
  auto sum = hn::Mul(hn::LoadU(four, source), hn::LoadU(four, weights));
  for (int k = 4; k < taps; k += 4)
    sum = hn::MulAdd(hn::LoadU(four, source + k), hn::LoadU(four, weights + k), sum);
  return sum;
}

/// The four sums of the lanes of four vectors.
template <class Vector>
HWY_INLINE Vector sumsOfLanes(Four four, Vector a, Vector b, Vector c, Vector d) {
  const auto ab = hn::Add(hn::InterleaveLower(four, a, b), hn::InterleaveUpper(four, a, b));
  const auto cd = hn::Add(hn::InterleaveLower(four, c, d), hn::InterleaveUpper(four, c, d));
  return hn::Add(hn::ConcatLowerLower(four, cd, ab), hn::ConcatUpperUpper(four, cd, ab));
}

void filterRow(const float* source, const LanczosAxis& axis, float* result) {
  const Four four;
  const int taps = axis.taps();
  const auto sum = [&](int i)
                       HWY_ATTR { return weighedSum(four, source + axis.first(i), axis.weights(i), taps); };
  int i = 0;
  for (; i + 4 <= axis.resultCount(); i += 4) {
    hn::StoreU(sumsOfLanes(four, sum(i), sum(i + 1), sum(i + 2), sum(i + 3)), four, result + i);
  }
  for (; i < axis.resultCount(); ++i) result[i] = hn::GetLane(hn::SumOfLanes(four, sum(i)));
}

#endif

void blendRows(const WeightedRows& source, float* result, std::size_t width) {
  const auto [rows, weights, count] = source;
  const hn::ScalableTag<float> floats;
  const std::size_t lanes = hn::Lanes(floats);
  std::size_t x = 0;
  for (; x + 2 * lanes <= width; x += 2 * lanes) {
    auto left = hn::Zero(floats);
    auto right = hn::Zero(floats);
    for (int k = 0; k < count; ++k) {
      const auto weight = hn::Set(floats, weights[k]);
      left = hn::MulAdd(hn::LoadU(floats, rows[k] + x), weight, left);
      right = hn::MulAdd(hn::LoadU(floats, rows[k] + x + lanes), weight, right);
    }
    hn::StoreU(left, floats, result + x);
    hn::StoreU(right, floats, result + x + lanes);
  }
  for (; x < width; ++x) {
    result[x] = 0;
    for (int k = 0; k < count; ++k) result[x] += weights[k] * rows[k][x];
  }
}

}  // namespace kestrova::imaging::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrova::imaging::kernels {

HWY_EXPORT(widen8);
HWY_EXPORT(widen16);
HWY_EXPORT(narrow8);
HWY_EXPORT(narrow16);
HWY_EXPORT(filterRow);
HWY_EXPORT(blendRows);

void widen(const std::uint8_t* samples, std::size_t count, float* result) {
  HWY_DYNAMIC_DISPATCH(widen8)(samples, count, result);
}

void widen(const std::uint16_t* samples, std::size_t count, float* result) {
  HWY_DYNAMIC_DISPATCH(widen16)(samples, count, result);
}

void narrow(const float* values, std::size_t count, std::uint8_t* result) {
  HWY_DYNAMIC_DISPATCH(narrow8)(values, count, result);
}

void narrow(const float* values, std::size_t count, std::uint16_t* result) {
  HWY_DYNAMIC_DISPATCH(narrow16)(values, count, result);
}

void filterRow(const float* source, const LanczosAxis& axis, float* result) {
  HWY_DYNAMIC_DISPATCH(filterRow)(source, axis, result);
}

void blendRows(const WeightedRows& source, float* result, std::size_t width) {
  HWY_DYNAMIC_DISPATCH(blendRows)(source, result, width);
}

}  // namespace kestrova::imaging::kernels
#endif
