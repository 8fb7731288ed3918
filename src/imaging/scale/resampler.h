#pragma once

#include "imaging/scale/lanczos_axis.h"

#include <array>
#include <cstddef>
#include <vector>

namespace kestrova::imaging {

/// How the samples of a pixel lie in memory: channels interleaved, in the byte order of the machine.
struct PixelLayout {
  int channels = 1;
  int bytesPerSample = 1;  ///< 1 or 2
  /// The last channel is opacity and the others are not multiplied by it. They are while they are filtered,
  /// so that the colour of transparent pixels does not bleed.
  bool alpha = false;

  int pixelBytes() const { return channels * bytesPerSample; }
};

/// Scales a picture by a separable Lanczos-3 filter in floats. Source rows go in from the top, result rows
/// come out as soon as two of them are complete; only as many rows as the filter spans are held. Rows are
/// blended before they are narrowed: there are fewer of them then. One thread at a time.
class Resampler {
 public:
  /// Throws ImageError when the rows held would exceed the limits, and Interrupted.
  Resampler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout,
            const Stopped& stopped = {});

  /// Takes the next source row.
  void push(const void* row);
  /// Writes the next result row if everything it needs has been pushed. Call it after every push until it
  /// returns false.
  bool pull(void* row);

 private:
  /// Computes the next two result rows, or the last one; false if not all that they need has been pushed.
  bool filterNextRows();
  /// Sets the weights by which the rows held become the next two result rows. Returns how many rows count.
  int weighRows();
  std::size_t channels() const { return static_cast<std::size_t>(layout_.channels); }
  float* ringRow(int sourceRow);
  template <class Sample>
  void separate(const Sample* row, float* planes);
  template <class Sample>
  void interleave(const float* planes, Sample* row);

  LanczosAxis x_;
  LanczosAxis y_;
  PixelLayout layout_;
  std::size_t
      paddedWidth_;        ///< floats of one channel of a source row, padded as the filter reads past its end
  std::size_t sourceRow_;  ///< floats of a source row, all channels one after the other
  std::size_t resultRow_;
  int pushed_ = 0;
  int filtered_ = 0;
  int pulled_ = 0;
  std::vector<float> ring_;
  std::vector<const float*> rows_;                ///< of the ring, those that count
  std::array<std::vector<float>, 2> rowWeights_;  ///< of those rows, for each result row
  std::array<std::vector<float>, 2> blended_;
  std::array<std::vector<float>, 2> result_;
};

}  // namespace kestrova::imaging
