#pragma once

#include "imaging/scale/lanczos_axis.h"

#include <array>
#include <cstddef>
#include <cstdint>

// The inner loops of the resampler, each compiled for every instruction set of the processor family; the best
// one that the processor supports is chosen at run time. Callable from any thread.
namespace kestrova::imaging::kernels {

/// Samples to floats of the same value.
void widen(const std::uint8_t* samples, std::size_t count, float* result);
void widen(const std::uint16_t* samples, std::size_t count, float* result);

/// Floats to samples: rounded to the nearest, kept within the sample's range.
void narrow(const float* values, std::size_t count, std::uint8_t* result);
void narrow(const float* values, std::size_t count, std::uint16_t* result);

/// result[i] = sum of the axis's weights for i times `source`. Up to taps() - 1 floats after the source's end
/// are read and must be finite.
void filterRow(const float* source, const LanczosAxis& axis, float* result);

/// Two results are computed at a time: reading the rows takes longer than calculating with them.
template <class Value>
using RowPair = std::array<Value*, 2>;

/// Rows to blend, and the weights of each for either result.
struct WeightedRows {
  const float* const* rows = nullptr;
  RowPair<const float> weights{};
  int count = 0;
};

/// Rows that are blended have a multiple of so many floats.
inline constexpr std::size_t blendedTogether = 32;

/// result[x] = sum over the rows of weights[i] * rows[i][x], for each result. The width is a multiple of
/// `blendedTogether`.
void blendRows(const WeightedRows& source, const RowPair<float>& results, std::size_t width);

}  // namespace kestrova::imaging::kernels
