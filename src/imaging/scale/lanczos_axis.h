#pragma once

#include "imaging/base/interruption.h"

#include <cstddef>
#include <vector>

namespace kestrova::imaging {

/// How one axis of the result lies over that of the source: result sample i is centred on the source
/// coordinate origin + (i + 0.5) * step, where source sample j reaches from j to j + 1.
struct AxisMapping {
  int sourceCount = 0;
  int resultCount = 0;
  double step = 1;
  double origin = 0;
  /// Each source sample is shown as two, each mixed with a quarter of the neighbour on its side.
  bool interpolated = false;

  bool isIdentity() const { return sourceCount == resultCount && step == 1 && origin == 0 && !interpolated; }
};

/// The mapping that lays the whole result over the whole source.
inline AxisMapping wholeAxis(int sourceCount, int resultCount) {
  return {.sourceCount = sourceCount,
          .resultCount = resultCount,
          .step = static_cast<double>(sourceCount) / resultCount};
}

/// The weights of a Lanczos-3 filter (Lanczos-windowed sinc of three lobes), widened by the step when the
/// axis shrinks. Weights of a sample sum to 1; at the edges the weights inside the picture are scaled up.
class LanczosAxis {
 public:
  /// Throws ImageError when the weights would exceed the limits, and Interrupted.
  explicit LanczosAxis(const AxisMapping& mapping, const Stopped& stopped = {});

  int resultCount() const { return static_cast<int>(first_.size()); }
  int sourceCount() const { return sourceCount_; }
  /// Weights per result sample, a multiple of 8, padded with zeros.
  int taps() const { return taps_; }
  int first(int sample) const { return first_[static_cast<std::size_t>(sample)]; }
  /// The number of source samples, from the first one, that count.
  int count(int sample) const { return count_[static_cast<std::size_t>(sample)]; }
  /// The source sample after those.
  int end(int sample) const { return first(sample) + count(sample); }
  const float* weights(int sample) const {
    return weights_.data() + static_cast<std::size_t>(sample) * static_cast<std::size_t>(taps_);
  }

 private:
  int sourceCount_;
  int taps_;
  std::vector<int> first_;
  std::vector<int> count_;
  std::vector<float> weights_;
};

}  // namespace kestrova::imaging
