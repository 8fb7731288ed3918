#include "imaging/photo_rewrite.h"
#include "support/photo_types.h"
#include "support/rewriting.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>
#include <zlib.h>

// Rewriting photos that are cut off or damaged.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

/// The parameter is the type of the photo.
class DamagedPhotoTest : public testing::TestWithParam<ImageType> {};

TEST_P(DamagedPhotoTest, IsAnErrorWhereverItIsCutOff) {
  const Bytes source = photoOf(GetParam(), {.width = 120, .height = 80, .orientation = 6});
  constexpr std::size_t cuts = 97;
  for (std::size_t size = 0; size < source.size(); size += 1 + source.size() / cuts) {
    const Bytes cut(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(rewritten(cut, toSizeUpright({60, 40}))) << size << " of " << source.size() << " bytes";
    EXPECT_FALSE(rewritten(cut, asItIs)) << size << " of " << source.size() << " bytes, kept";
  }
}

/// Corrects the checksums of a PNG's chunks; otherwise the decoder would never see the damage.
void repairChecksums(Bytes& file) {
  const auto numberAt = [&](std::size_t at) {
    return std::size_t{file[at]} << 24 | std::size_t{file[at + 1]} << 16 | std::size_t{file[at + 2]} << 8 |
           file[at + 3];
  };
  if (imageTypeOf(file) != ImageType::png) return;
  for (std::size_t at = 8; at + 12 <= file.size() && numberAt(at) <= file.size() - at - 12;) {
    const std::size_t end = at + 8 + numberAt(at);
    const unsigned long sum = crc32_z(0, file.data() + at + 4, end - at - 4);
    for (std::size_t i = 0; i < 4; ++i) file[end + i] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
    at = end + 4;
  }
}

/// Metadata is within so many bytes from the start.
constexpr std::size_t metadataSize = 800;

/// The photo with a few bytes changed, most of them in its metadata, and sometimes cut off.
Bytes mutated(const Bytes& source, std::mt19937& random) {
  Bytes file = source;
  for (auto changes = 1 + random() % 6; changes > 0; --changes) {
    const std::size_t range = random() % 3 == 0 ? file.size() : std::min(file.size(), metadataSize);
    file[random() % range] = static_cast<std::uint8_t>(random());
  }
  if (random() % 4 == 0) file.resize(random() % file.size());
  if (random() % 4 != 0) repairChecksums(file);
  return file;
}

TEST_P(DamagedPhotoTest, StandsAThousandMutations) {
  const Bytes source = photoOf(GetParam(), {.width = 96,
                                            .height = 64,
                                            .orientation = 7,
                                            .thumbnail = true,
                                            .makerNote = jpegPhoto({.width = 40, .height = 24})});
  constexpr int mutations = 1000;
  std::mt19937 random(11);
  int written = 0;
  for (int i = 0; i < mutations; ++i) {
    const Bytes file = mutated(source, random);
    const bool upright = random() % 2 == 0;
    const auto scaled = rewritten(file, {.size = PixelSize{37, 41}, .upright = upright});
    const auto kept = rewritten(file, {.size = std::nullopt, .upright = upright});
    for (const auto& result : {scaled, kept}) {
      if (!result) continue;
      ++written;
      EXPECT_TRUE(test::sizeOf(*result).has_value()) << "mutation " << i;
    }
  }
  EXPECT_GT(written, 0);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, DamagedPhotoTest, allTypes,
                         [](const auto& test) { return nameOf(test.param); });

}  // namespace
}  // namespace kestrova::imaging
