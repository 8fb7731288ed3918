#include "imaging/photo_rewrite.h"

#include "support/external_tool.h"
#include "support/photo_types.h"
#include "support/rewriting.h"
#include "support/temporary_folder.h"

#include <future>
#include <vector>

#include <gtest/gtest.h>

// Rewriting photos: what is kept, what is refused, and on several threads.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

/// The parameter is the type of the photo.
class PhotoTypeTest : public testing::TestWithParam<ImageType> {
 protected:
  TemporaryFolder folder_;
};

TEST_P(PhotoTypeTest, KeepsItsPixelsWhenThereIsNothingToDo) {
  const Bytes source = photoOf(GetParam(), {.width = 203, .height = 141, .orientation = 6});
  const Bytes result = rewrittenAsItIs(source);
  const auto before = pictureOf(writeFile(folder_ / "source", source));
  EXPECT_EQ(likeness(before, pictureOf(writeFile(folder_ / "result", result))), identical);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, PhotoTypeTest, allTypes,
                         [](const auto& test) { return nameOf(test.param); });

TEST(PhotoRewrite, RefusesWhatIsNotAPhoto) {
  for (const Bytes& file : {Bytes{}, Bytes{0xFF}, Bytes{0xFF, 0xD8, 0xFF},
                            Bytes{'G', 'I', 'F', '8', '9', 'a'}, Bytes(100, 0), videoFile(5000)}) {
    EXPECT_FALSE(rewritten(file, toUpright));
    EXPECT_FALSE(test::sizeOf(file));
  }
}

TEST(PhotoRewrite, RefusesSizesThatNoPictureHas) {
  const Bytes photo = jpegPhoto({.width = 64, .height = 48});
  for (const PixelSize& size :
       {PixelSize{0, 10}, PixelSize{10, -1}, PixelSize{70'000, 10}, PixelSize{60'000, 60'000}}) {
    EXPECT_FALSE(rewritten(photo, toSize(size))) << size.width << "x" << size.height;
  }
}

TEST(PhotoRewrite, GivesTheSameBytesInSeveralThreadsAtATime) {
  const SamplePhoto sample{.width = 160, .height = 96, .orientation = 6, .thumbnail = true};
  const std::vector<Bytes> photos{jpegPhoto(sample), pngPhoto(sample), tiffPhoto(sample)};
  const auto rewriteAll = [&] {
    std::vector<Bytes> results;
    for (const auto& photo : photos)
      results.push_back(rewritten(photo, toSizeUpright({48, 80})).value_or(Bytes()));
    return results;
  };
  const auto expected = rewriteAll();
  std::vector<std::future<std::vector<Bytes>>> others;
  for (int i = 0; i < 4; ++i) others.push_back(std::async(std::launch::async, rewriteAll));
  for (auto& other : others) EXPECT_EQ(other.get(), expected);
}

}  // namespace
}  // namespace kestrova::imaging
