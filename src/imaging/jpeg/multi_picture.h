#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace kestrova::imaging {

/// A picture after the first one in the file, as a byte range of the file.
struct FurtherPicture {
  std::size_t offset = 0;
  std::size_t length = 0;
};

/// The index of a multi-picture file (CIPA DC-007): a TIFF structure after "MPF\0" in an APP2 segment, whose
/// offsets count from its own beginning in the file.
class MultiPictureIndex {
 public:
  /// Reads the structure at `base` in a file of `fileSize` bytes whose first picture ends at `imageEnd`.
  /// Nothing if it names a picture that does not lie completely after the first.
  static std::optional<MultiPictureIndex> read(ByteView block, std::size_t base, std::size_t imageEnd,
                                               std::size_t fileSize);

  const std::vector<FurtherPicture>& pictures() const { return pictures_; }

  /// Rewrites the structure in `block` (the same one, perhaps copied) for a first picture of `firstLength`
  /// bytes and pictures at the offsets given, with the structure itself at `base`.
  void write(std::span<std::uint8_t> block, std::size_t base, std::size_t firstLength,
             std::span<const FurtherPicture> pictures) const;

 private:
  std::size_t entries_ = 0;         ///< where the entries are in the block; 0 when it has none
  std::vector<std::size_t> index_;  ///< which entry each picture has
  std::vector<FurtherPicture> pictures_;
};

}  // namespace kestrova::imaging
