#include "imaging/lanczos_axis.h"

#include "imaging/image_error.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrova::imaging {

namespace {

constexpr double lobes = 3;

double lanczos(double x) {
  if (std::abs(x) < 1e-9) return 1;
  if (std::abs(x) >= lobes) return 0;
  const double angle = std::numbers::pi * x;
  return lobes * std::sin(angle) * std::sin(angle / lobes) / (angle * angle);
}

int tapsFor(const AxisMapping& mapping, double widening) {
  const int reach = static_cast<int>(std::ceil(2 * lobes * widening)) + 1;
  return (std::min(reach, mapping.sourceCount) + 3) / 4 * 4;
}

}  // namespace

LanczosAxis::LanczosAxis(const AxisMapping& mapping) : sourceCount_(mapping.sourceCount) {
  const double widening = std::max(1.0, mapping.step);
  taps_ = tapsFor(mapping, widening);
  const auto results = static_cast<std::size_t>(mapping.resultCount);
  if (results * static_cast<std::size_t>(taps_) * sizeof(float) > static_cast<std::size_t>(maxWorkingBytes)) {
    throw ImageError("the picture needs too much memory");
  }
  first_.resize(results);
  count_.resize(results);
  weights_.resize(results * static_cast<std::size_t>(taps_));
  for (int i = 0; i < mapping.resultCount; ++i) weigh(i, mapping.origin + (i + 0.5) * mapping.step, widening);
}

void LanczosAxis::weigh(int sample, double centre, double widening) {
  const double reach = lobes * widening;
  const int nearest = std::clamp(static_cast<int>(std::floor(centre)), 0, sourceCount_ - 1);
  const int begin = std::clamp(static_cast<int>(std::floor(centre - reach + 0.5)), 0, nearest);
  const int end = std::clamp(static_cast<int>(std::floor(centre + reach + 0.5)), nearest + 1,
                             std::min(sourceCount_, begin + taps_));
  const auto index = static_cast<std::size_t>(sample);
  first_[index] = begin;
  count_[index] = end - begin;
  std::vector<double> exact(static_cast<std::size_t>(end - begin));
  double sum = 0;
  for (int x = begin; x < end; ++x) {
    sum += exact[static_cast<std::size_t>(x - begin)] = lanczos((x + 0.5 - centre) / widening);
  }
  float* weights = weights_.data() + index * static_cast<std::size_t>(taps_);
  std::transform(exact.begin(), exact.end(), weights,
                 [sum](double weight) { return static_cast<float>(weight / sum); });
}

}  // namespace kestrova::imaging
