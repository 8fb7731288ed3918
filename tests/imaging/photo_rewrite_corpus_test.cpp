#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/photo_tags.h"
#include "support/real_photos.h"
#include "support/rewriting.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Rewrites real photos.
namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::IsEmpty;

struct Wish {
  std::string name;
  std::optional<PixelSize> box = {};
  bool upright = false;
};

void PrintTo(const Wish& wish, std::ostream* stream) { *stream << wish.name; }

PixelSize fitted(const PixelSize& size, const PixelSize& box) {
  const double scale = std::min({1.0, static_cast<double>(box.width) / static_cast<double>(size.width),
                                 static_cast<double>(box.height) / static_cast<double>(size.height)});
  const auto side = [scale](std::int64_t pixels) {
    return std::max<std::int64_t>(1, std::llround(static_cast<double>(pixels) * scale));
  };
  return {side(size.width), side(size.height)};
}

RewriteRequest requestFor(const ImageSize& size, const Wish& wish) {
  RewriteRequest request{.size = std::nullopt, .upright = wish.upright};
  if (wish.box) request.size = fitted(wish.upright ? size.upright() : size.stored, *wish.box);
  return request;
}

/// Whether ImageMagick or exiftool complain.
bool hasComplaints(const Path& photo, const Tags& tags) {
  if (tags.contains("ExifTool:Warning") || tags.contains("ExifTool:Error")) return true;
  return runTool("convert", {"-regard-warnings", photo.native(), "null:"}).status != 0;
}

class CorpusTest : public RealPhotosTest, public testing::WithParamInterface<Wish> {
 protected:
  void expectGood(const Path& source, const Bytes& written, const PixelSize& size) {
    const auto back = test::sizeOf(written);
    ASSERT_TRUE(back) << source;
    EXPECT_EQ(back->stored, size) << source;
    const Path path = writeFile(folder_ / "result", written);
    const Tags before = tagsOf(source);
    const Tags after = tagsOf(path);
    EXPECT_TRUE(!hasComplaints(path, after) || hasComplaints(source, before)) << source;
    EXPECT_THAT(unexpectedChanges(before, after), IsEmpty()) << source;
  }

  TemporaryFolder folder_;
};

TEST_P(CorpusTest, IsWrittenWithoutALossAndReadAgain) {
  std::size_t written = 0;
  for (const auto& photo : photos()) {
    const Bytes source = bytesOf(photo);
    const auto size = test::sizeOf(source);
    if (!size) continue;
    const RewriteRequest request = requestFor(*size, GetParam());
    const auto result = rewritten(source, request);
    if (!result) continue;
    ++written;
    expectGood(photo, *result, request.size.value_or(GetParam().upright ? size->upright() : size->stored));
    EXPECT_TRUE(rewritten(*result, asItIs)) << photo << " does not decode again";
  }
  const std::size_t nearlyAll = photos().size() * 9 / 10;
  EXPECT_GE(written, nearlyAll) << "few photos could be written";
}

class CorpusPreviewTest : public RealPhotosTest {
 protected:
  /// Photos whose maker notes hold a readable preview.
  std::vector<Path> photosWithPreviews() {
    const auto run = runTool("exiftool", {"-q", "-r", "-if", "$PreviewImage and not $MPF:all", "-p",
                                          "$Directory/$FileName", corpus()});
    std::vector<Path> photos;
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) photos.emplace_back(line);
    return photos;
  }

  static std::string preview(const Path& photo) {
    return runTool("exiftool", {"-b", "-PreviewImage", photo.native()}).output;
  }

  TemporaryFolder folder_;
};

TEST_F(CorpusPreviewTest, KeepsThePreviewsOfMakerNotesWhenItTurns) {
  std::size_t kept = 0;
  for (const auto& photo : photosWithPreviews()) {
    const Path source = writeFile(folder_ / "source.jpg", bytesOf(photo));
    ASSERT_EQ(
        runTool("exiftool", {"-q", "-overwrite_original", "-n", "-Orientation=6", source.native()}).status,
        0);
    const auto result = rewritten(bytesOf(source), toUpright);
    if (!result) continue;
    EXPECT_TRUE(preview(writeFile(folder_ / "result.jpg", *result)) == preview(source)) << photo;
    ++kept;
  }
  constexpr std::size_t several = 4;
  EXPECT_GE(kept, several) << "few photos hold a preview";
}

INSTANTIATE_TEST_SUITE_P(
    Wishes, CorpusTest,
    testing::Values(Wish{.name = "Small", .box = PixelSize{1280, 720}},
                    Wish{.name = "LargeUpright", .box = PixelSize{1920, 1080}, .upright = true},
                    Wish{.name = "Upright", .upright = true}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace kestrova::imaging
