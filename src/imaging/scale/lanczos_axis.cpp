#include "imaging/scale/lanczos_axis.h"

#include "imaging/base/image_error.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrova::imaging {

namespace {

constexpr double lobes = 3;

/// The sines of angles at equal distances, each from the one before by the addition theorem: a sine of its
/// own for every weight would take as long as all the rest of them.
class SineRow {
 public:
  SineRow(double first, double step)
      : sine_(std::sin(first)),
        cosine_(std::cos(first)),
        stepSine_(std::sin(step)),
        stepCosine_(std::cos(step)) {}

  double next() {
    const double sine = sine_;
    sine_ = sine * stepCosine_ + cosine_ * stepSine_;
    cosine_ = cosine_ * stepCosine_ - sine * stepSine_;
    return sine;
  }

 private:
  double sine_;
  double cosine_;
  double stepSine_;
  double stepCosine_;
};

/// The Lanczos function of x = angle * lobes / pi, from the angle and its sine: as sin(3a) = sin(a) * (3 - 4
/// sin(a)^2), no other sine is needed.
double lanczos(double angle, double sine) {
  static_assert(lobes == 3);
  if (std::abs(angle) < 1e-6) return 1;
  if (std::abs(angle) >= std::numbers::pi) return 0;
  const double square = sine * sine;
  return square * (3 - 4 * square) / (3 * angle * angle);
}

double wideningOf(const AxisMapping& mapping) { return std::max(1.0, mapping.step); }

int tapsFor(const AxisMapping& mapping) {
  const int reach = static_cast<int>(std::ceil(2 * lobes * wideningOf(mapping))) + 1;
  return std::min(reach, mapping.sourceCount);
}

int roundedUp(int taps) { return (taps + 7) / 8 * 8; }

/// The weights of one result sample, from a first source sample on.
struct Weights {
  int first = 0;
  std::vector<double> values;
};

Weights weigh(const AxisMapping& mapping, int sample) {
  const double widening = wideningOf(mapping);
  const double centre = mapping.origin + (sample + 0.5) * mapping.step;
  const double reach = lobes * widening;
  const int nearest = std::clamp(static_cast<int>(std::floor(centre)), 0, mapping.sourceCount - 1);
  const int begin = std::clamp(static_cast<int>(std::floor(centre - reach + 0.5)), 0, nearest);
  const int end = std::clamp(static_cast<int>(std::floor(centre + reach + 0.5)), nearest + 1,
                             std::min(mapping.sourceCount, begin + tapsFor(mapping)));
  Weights weights{.first = begin, .values = {}};
  const double step = std::numbers::pi / reach;
  const double first = (begin + 0.5 - centre) * step;
  SineRow sines(first, step);
  double sum = 0;
  for (int x = 0; x < end - begin; ++x)
    sum += weights.values.emplace_back(lanczos(first + x * step, sines.next()));
  for (double& weight : weights.values) weight /= sum;
  return weights;
}

/// The axis after each source sample has become two.
AxisMapping spread(const AxisMapping& mapping) {
  return {.sourceCount = 2 * mapping.sourceCount,
          .resultCount = mapping.resultCount,
          .step = 2 * mapping.step,
          .origin = 2 * mapping.origin};
}

/// Weights of the samples that the doubled ones are made of: three quarters of the weight go to the sample
/// they lie in, one to its nearest neighbour; at the edges all of it goes to the sample.
Weights gathered(const Weights& spread, int sourceCount) {
  const int last = spread.first + static_cast<int>(spread.values.size()) - 1;
  const int begin = std::max(0, (spread.first - 1) / 2);
  const int end = std::min(sourceCount, (last + 1) / 2 + 1);
  Weights weights{.first = begin, .values = std::vector<double>(static_cast<std::size_t>(end - begin))};
  const auto add = [&](int sample, double weight) {
    weights.values[static_cast<std::size_t>(std::clamp(sample, 0, sourceCount - 1) - begin)] += weight;
  };
  for (int x = spread.first; x <= last; ++x) {
    const double weight = spread.values[static_cast<std::size_t>(x - spread.first)];
    add(x / 2, 0.75 * weight);
    add(x % 2 == 0 ? x / 2 - 1 : x / 2 + 1, 0.25 * weight);
  }
  return weights;
}

}  // namespace

LanczosAxis::LanczosAxis(const AxisMapping& mapping, const Stopped& stopped)
    : sourceCount_(mapping.sourceCount) {
  taps_ = roundedUp(mapping.interpolated ? tapsFor(spread(mapping)) / 2 + 3 : tapsFor(mapping));
  const auto results = static_cast<std::size_t>(mapping.resultCount);
  requireMemory(results * static_cast<std::size_t>(taps_) * sizeof(float));
  first_.resize(results);
  count_.resize(results);
  weights_.resize(results * static_cast<std::size_t>(taps_));
  for (std::size_t i = 0; i < results; ++i) {
    throwIfStopped(stopped);
    const int sample = static_cast<int>(i);
    const Weights weights = mapping.interpolated ? gathered(weigh(spread(mapping), sample), sourceCount_)
                                                 : weigh(mapping, sample);
    first_[i] = weights.first;
    count_[i] = static_cast<int>(weights.values.size());
    std::ranges::transform(weights.values, weights_.begin() + static_cast<std::ptrdiff_t>(i) * taps_,
                           [](double weight) { return static_cast<float>(weight); });
  }
}

}  // namespace kestrova::imaging
