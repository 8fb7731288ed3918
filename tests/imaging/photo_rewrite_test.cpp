#include "imaging/photo_rewrite.h"

#include "imaging/photo_properties.h"
#include "support/external_tool.h"
#include "support/photo_tags.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <future>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

namespace kestrova::imaging {

void PrintTo(ImageType type, std::ostream* stream) {
  *stream << (type == ImageType::jpeg ? "JPEG" : type == ImageType::png ? "PNG" : "TIFF");
}

namespace {

using namespace kestrova::test;
using testing::Combine;
using testing::IsEmpty;
using testing::Range;
using testing::Values;

Bytes photoOf(ImageType type, const SamplePhoto& photo) {
  switch (type) {
    case ImageType::jpeg:
      return jpegPhoto(photo);
    case ImageType::png:
      return pngPhoto(photo);
    case ImageType::tiff:
      break;
  }
  return tiffPhoto(photo);
}

std::string nameOf(ImageType type) {
  return type == ImageType::jpeg ? "Jpeg" : type == ImageType::png ? "Png" : "Tiff";
}

/// How like two decodings of the same pixels have to be: a JPEG that cannot be turned without loss is encoded
/// again.
// Likenesses in decibels.
constexpr double differentByRounding = 48;
constexpr double alikeWhenReencoded = 38;
constexpr double alikePreview = 30;

double turnedLikeness(ImageType type) { return type == ImageType::jpeg ? alikeWhenReencoded : identical; }

constexpr double alikeWhenScaled = 45;  ///< by another program's Lanczos filter
constexpr double alikeJpegsWhenScaled = 33;
constexpr double alikeSmallJpegsWhenScaled = 31;

/// Turned by ImageMagick, which is told the orientation: it does not look for it in every type.
Picture turnedPicture(const Path& file, std::int64_t orientation,
                      const std::vector<std::string>& scaling = {}) {
  static const std::vector<std::string> names{"TopLeft", "TopRight", "BottomRight", "BottomLeft",
                                              "LeftTop", "RightTop", "RightBottom", "LeftBottom"};
  std::vector<std::string> operations{"-orient", names.at(static_cast<std::size_t>(orientation - 1)),
                                      "-auto-orient"};
  operations.insert(operations.end(), scaling.begin(), scaling.end());
  return pictureOf(file, operations);
}

using OrientedType = std::tuple<ImageType, int>;

class OrientedPhotoTest : public testing::TestWithParam<OrientedType> {
 protected:
  ImageType type() const { return std::get<0>(GetParam()); }
  int orientation() const { return std::get<1>(GetParam()); }
  SamplePhoto sample(int width, int height) const {
    return {.width = width,
            .height = height,
            .orientation = orientation(),
            .exifPixelSize = true,
            .thumbnail = true};
  }
  /// The photo as a viewer that honours its tag shows it.
  Picture seen(const Bytes& photo, const std::vector<std::string>& scaling = {}) const {
    return turnedPicture(writeFile(folder_ / "seen", photo), *readPhotoProperties(photo)->orientation,
                         scaling);
  }
  Picture stored(const Bytes& photo) const { return pictureOf(writeFile(folder_ / "stored", photo)); }
  TemporaryFolder folder_;
};

TEST_P(OrientedPhotoTest, StandsUprightInWholeBlocks) {
  const Bytes source = photoOf(type(), sample(208, 144));
  const Bytes result = turnedUpright(source);
  EXPECT_EQ(readPhotoProperties(result)->orientation, 1);
  EXPECT_GE(likeness(seen(source), stored(result)),
            type() == ImageType::jpeg ? differentByRounding : identical);
}

TEST_P(OrientedPhotoTest, StandsUprightInAnySize) {
  const Bytes source = photoOf(type(), sample(203, 141));
  const Bytes result = turnedUpright(source);
  EXPECT_EQ(readPhotoProperties(result)->orientation, 1);
  EXPECT_GE(likeness(seen(source), stored(result)), turnedLikeness(type()));
}

TEST_P(OrientedPhotoTest, StandsUprightWhenScaled) {
  const Bytes source = photoOf(type(), sample(403, 301));
  const PixelSize whole = test::sizeOf(source)->upright();
  const PixelSize wanted{whole.width * 2 / 5, whole.height * 2 / 5};
  const Bytes result = mustRewrite(source, toSizeUpright(wanted));
  EXPECT_EQ(test::sizeOf(result)->stored, wanted);
  const std::string size = std::to_string(wanted.width) + "x" + std::to_string(wanted.height) + "!";
  EXPECT_GE(likeness(seen(source, {"-filter", "Lanczos", "-resize", size}), seen(result)),
            type() == ImageType::jpeg ? alikeJpegsWhenScaled : alikeWhenScaled);
}

TEST_P(OrientedPhotoTest, KeepsPixelsAndTagAsStoredWhenNotToBeTurned) {
  const Bytes source = photoOf(type(), sample(203, 141));
  const Bytes result = scaled(source, {101, 70});
  EXPECT_EQ(readPhotoProperties(result)->orientation, orientation());
  EXPECT_EQ(test::sizeOf(result)->stored, (PixelSize{101, 70}));
  const std::string size = orientation() >= 5 ? "70x101!" : "101x70!";
  EXPECT_GE(likeness(seen(source, {"-filter", "Lanczos", "-resize", size}), seen(result)),
            type() == ImageType::jpeg ? alikeSmallJpegsWhenScaled : alikeWhenScaled);
}

TEST_P(OrientedPhotoTest, ReportsItsSizeAsStoredAndAsSeen) {
  const auto size = test::sizeOf(photoOf(type(), sample(203, 141)));
  ASSERT_TRUE(size);
  EXPECT_EQ(size->orientation, orientation());
  EXPECT_EQ(size->stored, (PixelSize{203, 141}));
  EXPECT_EQ(size->upright(), (orientation() >= 5 ? PixelSize{141, 203} : PixelSize{203, 141}));
}

TEST_P(OrientedPhotoTest, KeepsAJpegInItsMakerNoteByteForByte) {
  const Bytes jpeg = jpegPhoto({.width = 96, .height = 48, .exif = false});
  SamplePhoto photo = sample(208, 144);
  photo.makerNote = jpeg;
  const Bytes source = photoOf(type(), photo);
  EXPECT_TRUE(contains(turnedUpright(source), jpeg));
  EXPECT_TRUE(contains(scaled(source, {104, 72}), jpeg));
}

class OrientedJpegTest : public OrientedPhotoTest {};

TEST_P(OrientedJpegTest, HasAPreviewThatIsTurnedWithIt) {
  const Bytes source = photoOf(type(), sample(416, 288));
  const auto preview = [&](const std::string& name, const Bytes& photo) {
    const Path path = writeFile(folder_ / name, photo);
    return writeFile(folder_ / (name + ".preview"),
                     runTool("exiftool", {"-b", "-ThumbnailImage", path.native()}).output);
  };
  const auto expected = turnedPicture(preview("source", source), orientation());
  EXPECT_GE(likeness(expected, pictureOf(preview("result", turnedUpright(source)))), alikePreview);
}

std::string orientedName(const testing::TestParamInfo<OrientedType>& test) {
  return nameOf(std::get<0>(test.param)) + std::to_string(std::get<1>(test.param));
}

INSTANTIATE_TEST_SUITE_P(AllTypes, OrientedPhotoTest,
                         Combine(Values(ImageType::jpeg, ImageType::png, ImageType::tiff), Range(1, 9)),
                         orientedName);
INSTANTIATE_TEST_SUITE_P(Previews, OrientedJpegTest, Combine(Values(ImageType::jpeg), Range(1, 9)),
                         orientedName);

class PhotoTypeTest : public testing::TestWithParam<ImageType> {
 protected:
  TemporaryFolder folder_;
};

/// A photo with as much metadata as exiftool can put into its type.
Bytes richPhoto(const TemporaryFolder& folder, ImageType type) {
  const Path path = writeFile(folder / ("rich." + nameOf(type)),
                              photoOf(type, {.width = 320,
                                             .height = 200,
                                             .orientation = 6,
                                             .makerNoteBytes = type == ImageType::jpeg ? 300U : 0U}));
  const ToolRun run =
      runTool("exiftool", {"-q",
                           "-q",
                           "-overwrite_original",
                           "-GPSLatitude=48.2",
                           "-GPSLatitudeRef=N",
                           "-GPSLongitude=16.3",
                           "-GPSLongitudeRef=E",
                           "-XMP-dc:Title=Title",
                           "-XMP-dc:Subject=one",
                           "-XMP-xmp:Rating=4",
                           "-Artist=Ärtist",
                           "-Copyright=Copy",
                           "-ExposureTime=1/250",
                           "-FNumber=2.8",
                           "-LensModel=Lens",
                           "-UserComment=a comment",
                           "-XResolution=300",
                           "-YResolution=300",
                           type == ImageType::png ? "-PNG:Comment=text" : "-IPTC:Keywords=keyword",
                           type == ImageType::jpeg ? "-Comment=a JPEG comment" : "-Software=software",
                           path.native()});
  EXPECT_EQ(run.status, 0) << run.errors;
  return bytesOf(path);
}

TEST_P(PhotoTypeTest, LosesNoTagByScaling) {
  const Bytes source = richPhoto(folder_, GetParam());
  const Tags before = tagsOf(writeFile(folder_ / "source", source));
  ASSERT_GE(before.size(), 25U);
  const Bytes result = scaled(source, {160, 100});
  EXPECT_THAT(unexpectedChanges(before, tagsOf(writeFile(folder_ / "result", result))), IsEmpty());
}

TEST_P(PhotoTypeTest, LosesNoTagByTurning) {
  const Bytes source = richPhoto(folder_, GetParam());
  const Tags before = tagsOf(writeFile(folder_ / "source", source));
  const Bytes result = turnedUpright(source);
  EXPECT_THAT(unexpectedChanges(before, tagsOf(writeFile(folder_ / "result", result))), IsEmpty());
}

TEST_P(PhotoTypeTest, ExchangesItsResolutionsWithItsAxes) {
  const std::vector<std::string> names{"JFIF:XResolution", "JFIF:YResolution", "IFD0:XResolution",
                                       "IFD0:YResolution", "PixelsPerUnitX",   "PixelsPerUnitY"};
  const auto resolutions = [&](const Bytes& photo) {
    std::vector<std::string> arguments{"-n", "-s3", "-f"};
    for (const auto& name : names) arguments.push_back("-" + name);
    arguments.push_back(writeFile(folder_ / "photo", photo).native());
    return runTool("exiftool", arguments).output;
  };
  const auto source = [&](int orientation) {
    const Path path = writeFile(folder_ / "source",
                                photoOf(GetParam(), {.width = 64, .height = 48, .orientation = orientation}));
    std::vector<std::string> arguments{"-q", "-overwrite_original", "-n", path.native()};
    for (std::size_t i = 0; i < names.size(); ++i)
      arguments.push_back("-" + names[i] + "=" + std::to_string(100 + i));
    EXPECT_EQ(runTool("exiftool", arguments).status, 0);
    return bytesOf(path);
  };
  const bool isJpeg = GetParam() == ImageType::jpeg;
  const bool isPng = GetParam() == ImageType::png;
  const std::string jfif = isJpeg ? "100\n101\n" : "-\n-\n";
  const std::string units = isPng ? "104\n105\n" : "-\n-\n";
  const Bytes halfTurned = source(3);
  const Bytes quarterTurned = source(6);
  const std::string before = jfif + "102\n103\n" + units;
  ASSERT_EQ(resolutions(halfTurned), before);
  ASSERT_EQ(resolutions(quarterTurned), before);
  EXPECT_EQ(resolutions(turnedUpright(halfTurned)), before);
  EXPECT_EQ(resolutions(scaled(quarterTurned, {32, 24})), before);
  const std::string turnedJfif = isJpeg ? "101\n100\n" : "-\n-\n";
  const std::string turnedUnits = isPng ? "105\n104\n" : "-\n-\n";
  EXPECT_EQ(resolutions(turnedUpright(quarterTurned)), turnedJfif + "103\n102\n" + turnedUnits);
}

TEST_P(PhotoTypeTest, StatesItsNewSizeInXmp) {
  const Path path =
      writeFile(folder_ / "source", photoOf(GetParam(), {.width = 120, .height = 80, .orientation = 6}));
  const std::vector<std::string> names{"XMP-tiff:ImageWidth", "XMP-tiff:ImageHeight",
                                       "XMP-exif:ExifImageWidth", "XMP-exif:ExifImageHeight", "XMP:Rating"};
  std::vector<std::string> writing{"-q", "-overwrite_original", path.native()};
  const std::vector<std::string> values{"120", "80", "120", "80", "4"};
  for (std::size_t i = 0; i < names.size(); ++i) writing.push_back("-" + names[i] + "=" + values[i]);
  ASSERT_EQ(runTool("exiftool", writing).status, 0);
  const Bytes source = bytesOf(path);
  const auto stated = [&](const RewriteRequest& request) {
    const Bytes result = mustRewrite(source, request);
    std::vector<std::string> reading{"-s3"};
    for (const auto& name : names) reading.push_back("-" + name);
    reading.push_back(writeFile(folder_ / "result", result).native());
    return runTool("exiftool", reading).output;
  };
  EXPECT_EQ(stated(toSize({60, 40})), "60\n40\n60\n40\n4\n");
  EXPECT_EQ(stated(toUpright), "80\n120\n80\n120\n4\n");
}

TEST_P(PhotoTypeTest, KeepsItsPixelsWhenThereIsNothingToDo) {
  const Bytes source = photoOf(GetParam(), {.width = 203, .height = 141, .orientation = 6});
  const Bytes result = rewrittenAsItIs(source);
  const auto before = pictureOf(writeFile(folder_ / "source", source));
  EXPECT_EQ(likeness(before, pictureOf(writeFile(folder_ / "result", result))), identical);
}

TEST_P(PhotoTypeTest, IsAnErrorWhereverItIsCutOff) {
  const Bytes source = photoOf(GetParam(), {.width = 120, .height = 80, .orientation = 6});
  for (std::size_t size = 0; size < source.size(); size += 1 + source.size() / 97) {
    const Bytes cut(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(rewritten(cut, toSizeUpright({60, 40}))) << size << " of " << source.size() << " bytes";
    EXPECT_FALSE(rewritten(cut, asItIs)) << size << " of " << source.size() << " bytes, kept";
  }
}

/// Makes the checksums of a PNG's chunks right again, or else they would keep all damage from the decoder.
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

Bytes mutated(const Bytes& source, std::mt19937& random) {
  Bytes file = source;
  for (auto changes = 1 + random() % 6; changes > 0; --changes) {
    const std::size_t range = random() % 3 == 0 ? file.size() : std::min<std::size_t>(file.size(), 800);
    file[random() % range] = static_cast<std::uint8_t>(random());
  }
  if (random() % 4 == 0) file.resize(random() % file.size());
  if (random() % 4 != 0) repairChecksums(file);
  return file;
}

TEST_P(PhotoTypeTest, StandsAThousandMutations) {
  const Bytes source = photoOf(GetParam(), {.width = 96,
                                            .height = 64,
                                            .orientation = 7,
                                            .thumbnail = true,
                                            .makerNote = jpegPhoto({.width = 40, .height = 24})});
  std::mt19937 random(11);
  int written = 0;
  for (int i = 0; i < 1000; ++i) {
    const Bytes file = mutated(source, random);
    const bool upright = random() % 2 == 0;
    const auto scaled = rewritten(file, {PixelSize{37, 41}, upright});
    const auto kept = rewritten(file, {std::nullopt, upright});
    for (const auto& result : {scaled, kept}) {
      if (!result) continue;
      ++written;
      EXPECT_TRUE(test::sizeOf(*result).has_value()) << "mutation " << i;
    }
  }
  EXPECT_GT(written, 0);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, PhotoTypeTest, Values(ImageType::jpeg, ImageType::png, ImageType::tiff),
                         [](const auto& test) { return nameOf(test.param); });

TEST(PhotoRewrite, TurnsDownWhatIsNoPhoto) {
  for (const Bytes& file : {Bytes{}, Bytes{0xFF}, Bytes{0xFF, 0xD8, 0xFF},
                            Bytes{'G', 'I', 'F', '8', '9', 'a'}, Bytes(100, 0), videoFile(5000)}) {
    EXPECT_FALSE(rewritten(file, toUpright));
    EXPECT_FALSE(test::sizeOf(file));
  }
}

TEST(PhotoRewrite, TurnsDownSizesThatNoPictureHas) {
  const Bytes photo = jpegPhoto({.width = 64, .height = 48});
  for (const PixelSize& size :
       {PixelSize{0, 10}, PixelSize{10, -1}, PixelSize{70'000, 10}, PixelSize{60'000, 60'000}}) {
    EXPECT_FALSE(rewritten(photo, {size, false})) << size.width << "x" << size.height;
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
