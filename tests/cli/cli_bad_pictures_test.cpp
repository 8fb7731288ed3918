#include "imaging/jpeg/jpeg_encoder.h"
#include "support/process.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

// Runs the real program on pictures that are broken, hostile or very large.
namespace kestrova::test {

namespace {

using testing::Contains;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool hasSanitizer = true;
#else
constexpr bool hasSanitizer = false;
#endif

constexpr long mostKilobytes = 2'000'000;  // the working memory of a codec, twice

/// A photo with its own date, so that it gets its own name, and stored sideways, so that it has to be
/// rewritten.
SamplePhoto photoOfMinute(int minute) {
  const std::string digits = std::to_string(100 + minute).substr(1);
  return {.width = 640, .height = 480, .orientation = 6, .digitized = "2014:05:21 13:" + digits + ":02"};
}

Bytes cutOff(Bytes file) {
  file.resize(file.size() / 3 * 2);
  return file;
}

Bytes withNoise(Bytes file) {
  for (std::size_t i = file.size() / 2; i < file.size() / 2 + 400; ++i)
    file[i] = static_cast<std::uint8_t>(i * 2654435761U >> 24);
  return file;
}

Bytes claimingTiff(const SamplePhoto& photo, std::uint64_t width, std::uint64_t height) {
  TiffBlock file = exifBlock(photo);
  claimSize(file, width, height);
  return file.encode();
}

/// Black, and as large as photos get; progressive, so that all of its coefficients have to be held.
Bytes hugeJpeg(const SamplePhoto& photo) {
  imaging::JpegPlanes picture{
      .format = {.colorSpace = JCS_GRAYSCALE, .progressive = true, .components = {{.id = 1}}},
      .size = {12'000, 9000},
      .planes = {}};
  picture.planes.emplace_back(picture.size.width, picture.size.height, 1);
  constexpr int quality = 75;
  const Bytes jpeg = imaging::encodeJpeg(picture, quality);
  return withSegments(jpeg, {exifSegment(exifBlock(photo).encode())});
}

std::multiset<std::string> contentsBelow(const Path& folder) {
  std::multiset<std::string> contents;
  for (const auto& name : filesBelow(folder)) contents.insert(readFile(folder / name));
  return contents;
}

class CliOverBadPictures : public testing::Test {
 protected:
  void add(const std::string& name, const Bytes& file) { writeFile(folder_ / "in" / name, file); }
  SamplePhoto next() { return photoOfMinute(minute_++); }

  void organise() {
    const auto result =
        runProcess({KESTROVA_CLI, "organise", folder_ / "in", "--to", folder_ / "out", "--media", "photos",
                    "--photo-formats", "jpeg+tiff+png", "--size", "1080p", "--upright"});
    EXPECT_EQ(result.status, 0) << result.err;
    rusage usage{};
    ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
    EXPECT_TRUE(hasSanitizer || usage.ru_maxrss <= mostKilobytes) << usage.ru_maxrss << " kB were used";
  }

  TemporaryFolder folder_;

 private:
  int minute_ = 0;
};

TEST_F(CliOverBadPictures, CopiesThemAsTheyAre) {
  add("cut-off.jpg", cutOff(jpegPhoto(next())));
  add("cut-off.png", cutOff(pngPhoto(next())));
  add("cut-off.tif", cutOff(tiffPhoto(next())));
  add("noise.jpg", withNoise(jpegPhoto(next())));
  add("noise.png", withNoise(pngPhoto(next())));
  add("film.jpg", videoFile(70'000));
  for (const auto& [width, height] :
       {std::pair{60'000U, 60'000U}, {1U, 65'500U}, {65'500U, 1U}, {0U, 480U}}) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    add(size + ".jpg", withFrameSize(jpegPhoto(next()), width, height));
    add(size + ".png", withHeaderSize(pngPhoto(next()), width, height));
    add(size + ".tif", claimingTiff(next(), width, height));
  }
  organise();
  EXPECT_EQ(contentsBelow(folder_ / "out"), contentsBelow(folder_ / "in"));
}

TEST_F(CliOverBadPictures, TakesWhatOnlyHasTheWrongName) {
  add("is-a-png.jpg", pngPhoto(next()));
  add("is-a-jpeg.png", jpegPhoto(next()));
  add("is-a-tiff.jpg", tiffPhoto(next()));
  organise();
  const auto written = contentsBelow(folder_ / "out");
  EXPECT_EQ(written.size(), 3U);
  EXPECT_THAT(written, Contains(testing::StartsWith("\x89PNG")));
  EXPECT_THAT(written, Contains(testing::StartsWith("\xFF\xD8\xFF")));
  EXPECT_THAT(written, Contains(testing::StartsWith("II*")));
}

TEST_F(CliOverBadPictures, ShrinksOneOfAHundredMegapixels) {
  add("huge.jpg", hugeJpeg(next()));
  organise();
  const auto written = contentsBelow(folder_ / "out");
  ASSERT_EQ(written.size(), 1U);
  constexpr std::size_t mostBytes = 100'000;  // of a black picture within the frame
  EXPECT_LT(written.begin()->size(), mostBytes);
}

}  // namespace

}  // namespace kestrova::test
