#include "imaging/scale/resampler_kernels.h"

#include <algorithm>
#include <array>
#include <numeric>

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

/// The result samples from `i` on, one after the other.
HWY_INLINE void filterFrom(int i, const float* source, const LanczosAxis& axis, float* result) {
  for (; i < axis.resultCount(); ++i) {
    const float* first = source + axis.first(i);
    result[i] = std::inner_product(first, first + axis.count(i), axis.weights(i), 0.0F);
  }
}

#if HWY_TARGET == HWY_SCALAR  // a processor without vectors of four floats

void filterRow(const float* source, const LanczosAxis& axis, float* result) {
  filterFrom(0, source, axis, result);
}

#else

using Four = hn::FixedTag<float, 4>;

#if HWY_CAP_GE256
using Taps = hn::FixedTag<float, 8>;
HWY_INLINE hn::Vec<Four> folded(hn::Vec<Taps> sums) {
  return hn::Add(hn::LowerHalf(sums), hn::UpperHalf(Four(), sums));
}
#else
using Taps = Four;
HWY_INLINE hn::Vec<Four> folded(hn::Vec<Taps> sums) { return sums; }
#endif

/// The four sums of the lanes of four vectors.
template <class Vector>
HWY_INLINE hn::Vec<Four> sumsOfLanes(Vector a, Vector b, Vector c, Vector d) {
  const Taps taps;
  const hn::Repartition<std::uint64_t, Taps> pairs;
  const auto ab = hn::Add(hn::InterleaveLower(taps, a, b), hn::InterleaveUpper(taps, a, b));
  const auto cd = hn::Add(hn::InterleaveLower(taps, c, d), hn::InterleaveUpper(taps, c, d));
  const auto low = hn::InterleaveLower(pairs, hn::BitCast(pairs, ab), hn::BitCast(pairs, cd));
  const auto high = hn::InterleaveUpper(pairs, hn::BitCast(pairs, ab), hn::BitCast(pairs, cd));
  return folded(hn::Add(hn::BitCast(taps, low), hn::BitCast(taps, high)));
}

/// Four result samples from `i` on.
HWY_INLINE hn::Vec<Four> fourSamples(int i, const float* source, const LanczosAxis& axis) {
  const Taps several;
  constexpr std::size_t lanes = hn::MaxLanes(several);
  const auto taps = static_cast<std::size_t>(axis.taps());
  const float* const weights = axis.weights(i);
  const std::array<const float*, 4> first{source + axis.first(i), source + axis.first(i + 1),
                                          source + axis.first(i + 2), source + axis.first(i + 3)};
  auto a = hn::Zero(several);
  auto b = hn::Zero(several);
  auto c = hn::Zero(several);
  auto d = hn::Zero(several);
  for (std::size_t k = 0; k < taps; k += lanes) {
    a = hn::MulAdd(hn::LoadU(several, first[0] + k), hn::LoadU(several, weights + k), a);
    b = hn::MulAdd(hn::LoadU(several, first[1] + k), hn::LoadU(several, weights + taps + k), b);
    c = hn::MulAdd(hn::LoadU(several, first[2] + k), hn::LoadU(several, weights + 2 * taps + k), c);
    d = hn::MulAdd(hn::LoadU(several, first[3] + k), hn::LoadU(several, weights + 3 * taps + k), d);
  }
  return sumsOfLanes(a, b, c, d);
}

void filterRow(const float* source, const LanczosAxis& axis, float* result) {
  int i = 0;
  for (; i + 4 <= axis.resultCount(); i += 4) hn::StoreU(fourSamples(i, source, axis), Four(), result + i);
  filterFrom(i, source, axis, result);
}

#endif

void blendRows(const WeightedRows& source, const RowPair<float>& results, std::size_t width) {
  const auto& [rows, weights, count] = source;
  const hn::CappedTag<float, blendedTogether / 2> floats;
  const std::size_t lanes = hn::Lanes(floats);
  for (std::size_t x = 0; x < width; x += 2 * lanes) {
    auto left0 = hn::Zero(floats);
    auto right0 = hn::Zero(floats);
    auto left1 = hn::Zero(floats);
    auto right1 = hn::Zero(floats);
    for (int k = 0; k < count; ++k) {
      const auto left = hn::LoadU(floats, rows[k] + x);
      const auto right = hn::LoadU(floats, rows[k] + x + lanes);
      const auto weight0 = hn::Set(floats, weights[0][k]);
      const auto weight1 = hn::Set(floats, weights[1][k]);
      left0 = hn::MulAdd(left, weight0, left0);
      right0 = hn::MulAdd(right, weight0, right0);
      left1 = hn::MulAdd(left, weight1, left1);
      right1 = hn::MulAdd(right, weight1, right1);
    }
    hn::StoreU(left0, floats, results[0] + x);
    hn::StoreU(right0, floats, results[0] + x + lanes);
    hn::StoreU(left1, floats, results[1] + x);
    hn::StoreU(right1, floats, results[1] + x + lanes);
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

void blendRows(const WeightedRows& source, const RowPair<float>& results, std::size_t width) {
  HWY_DYNAMIC_DISPATCH(blendRows)(source, results, width);
}

}  // namespace kestrova::imaging::kernels
#endif
