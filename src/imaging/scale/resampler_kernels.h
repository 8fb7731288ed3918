#pragma once

#include "imaging/scale/lanczos_axis.h"

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

/// Rows to blend, and the weight of each.
struct WeightedRows {
  const float* const* rows = nullptr;
  const float* weights = nullptr;
  int count = 0;
};

/// result[x] = sum over the rows of weights[i] * rows[i][x].
void blendRows(const WeightedRows& source, float* result, std::size_t width);

}  // namespace kestrova::imaging::kernels
