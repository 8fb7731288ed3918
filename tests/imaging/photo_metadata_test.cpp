#include "imaging/photo_rewrite.h"
#include "support/external_tool.h"
#include "support/photo_tags.h"
#include "support/photo_types.h"
#include "support/rewriting.h"
#include "support/temporary_folder.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// What rewriting a photo does to its metadata, as exiftool reads it.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::IsEmpty;

using Words = std::vector<std::string>;

/// The parameter is the type of the photo.
class PhotoMetadataTest : public testing::TestWithParam<ImageType> {
 protected:
  static bool isJpeg() { return GetParam() == ImageType::jpeg; }
  static bool isPng() { return GetParam() == ImageType::png; }

  /// The photo with tags that exiftool writes into it ("-Artist=Name").
  Bytes withTags(const SamplePhoto& photo, const Words& tags) {
    const Path path = writeFile(folder_ / "tagged", photoOf(GetParam(), photo));
    Words arguments{"-q", "-q", "-overwrite_original", "-n"};
    arguments.insert(arguments.end(), tags.begin(), tags.end());
    arguments.push_back(path.native());
    const ToolRun run = runTool("exiftool", arguments);
    EXPECT_EQ(run.status, 0) << run.errors;
    return bytesOf(path);
  }

  /// The values of these tags as exiftool reads them, one a line; "-" for those that the photo does not have.
  std::string valuesOf(const Bytes& photo, const Words& names) {
    Words arguments{"-n", "-s3", "-f"};
    for (const auto& name : names) arguments.push_back("-" + name);
    arguments.push_back(writeFile(folder_ / "photo", photo).native());
    return runTool("exiftool", arguments).output;
  }

  /// A photo with as much metadata as exiftool can put into its type.
  Bytes richPhoto() {
    const SamplePhoto photo{
        .width = 320, .height = 200, .orientation = 6, .makerNoteBytes = isJpeg() ? 300U : 0U};
    return withTags(photo, {"-GPSLatitude=48.2", "-GPSLatitudeRef=N", "-GPSLongitude=16.3",
                            "-GPSLongitudeRef=E", "-XMP-dc:Title=Title", "-XMP-dc:Subject=one",
                            "-XMP-xmp:Rating=4", "-Artist=Ärtist", "-Copyright=Copy", "-ExposureTime=0.004",
                            "-FNumber=2.8", "-LensModel=Lens", "-UserComment=a comment", "-XResolution=300",
                            "-YResolution=300", isPng() ? "-PNG:Comment=text" : "-IPTC:Keywords=keyword",
                            isJpeg() ? "-Comment=a JPEG comment" : "-Software=software"});
  }

  /// What is lost or changed between the two.
  std::vector<std::string> changes(const Bytes& source, const Bytes& result) {
    const Tags before = tagsOf(writeFile(folder_ / "source", source));
    EXPECT_GE(before.size(), manyTags);
    return unexpectedChanges(before, tagsOf(writeFile(folder_ / "result", result)));
  }

  static constexpr std::size_t manyTags = 25;  // of the rich photo, in each type
  TemporaryFolder folder_;
};

TEST_P(PhotoMetadataTest, LosesNoTagByScaling) {
  const Bytes source = richPhoto();
  EXPECT_THAT(changes(source, scaled(source, {160, 100})), IsEmpty());
}

TEST_P(PhotoMetadataTest, LosesNoTagByTurning) {
  const Bytes source = richPhoto();
  EXPECT_THAT(changes(source, turnedUpright(source)), IsEmpty());
}

TEST_P(PhotoMetadataTest, ExchangesItsResolutionsWithItsAxes) {
  const auto source = [this](int orientation) {
    return withTags({.width = 64, .height = 48, .orientation = orientation},
                    {"-JFIF:XResolution=100", "-JFIF:YResolution=101", "-IFD0:XResolution=102",
                     "-IFD0:YResolution=103", "-PixelsPerUnitX=104", "-PixelsPerUnitY=105"});
  };
  const auto resolutions = [this](const Bytes& photo) {
    return valuesOf(photo, {"JFIF:XResolution", "JFIF:YResolution", "IFD0:XResolution", "IFD0:YResolution",
                            "PixelsPerUnitX", "PixelsPerUnitY"});
  };
  const std::string absent = "-\n-\n";
  const std::string asWritten =
      (isJpeg() ? "100\n101\n" : absent) + "102\n103\n" + (isPng() ? "104\n105\n" : absent);
  const std::string exchanged =
      (isJpeg() ? "101\n100\n" : absent) + "103\n102\n" + (isPng() ? "105\n104\n" : absent);
  const Bytes halfTurned = source(3);
  const Bytes quarterTurned = source(6);
  ASSERT_EQ(resolutions(halfTurned), asWritten);
  ASSERT_EQ(resolutions(quarterTurned), asWritten);
  EXPECT_EQ(resolutions(turnedUpright(halfTurned)), asWritten);
  EXPECT_EQ(resolutions(scaled(quarterTurned, {32, 24})), asWritten);
  EXPECT_EQ(resolutions(turnedUpright(quarterTurned)), exchanged);
}

TEST_P(PhotoMetadataTest, StatesItsNewSizeInXmp) {
  const Bytes source =
      withTags({.width = 120, .height = 80, .orientation = 6},
               {"-XMP-tiff:ImageWidth=120", "-XMP-tiff:ImageHeight=80", "-XMP-exif:ExifImageWidth=120",
                "-XMP-exif:ExifImageHeight=80", "-XMP:Rating=4"});
  const auto stated = [&](const RewriteRequest& request) {
    return valuesOf(mustRewrite(source, request),
                    {"XMP-tiff:ImageWidth", "XMP-tiff:ImageHeight", "XMP-exif:ExifImageWidth",
                     "XMP-exif:ExifImageHeight", "XMP:Rating"});
  };
  EXPECT_EQ(stated(toSize({60, 40})), "60\n40\n60\n40\n4\n");
  EXPECT_EQ(stated(toUpright), "80\n120\n80\n120\n4\n");
}

INSTANTIATE_TEST_SUITE_P(AllTypes, PhotoMetadataTest, allTypes,
                         [](const auto& test) { return nameOf(test.param); });

}  // namespace
}  // namespace kestrova::imaging
