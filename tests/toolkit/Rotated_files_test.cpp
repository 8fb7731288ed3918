#include "support/environment_variable.h"
#include "support/error_output.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "support/test_pattern.h"
#include "toolkit/Rotated.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

// Images from files and data, and into files.

namespace kestrova {

using namespace Rotated;
using namespace test;

TEST(CreateImageFromFile, GivesThePixelsAsTheyAreStored) {
  const TemporaryFolder folder;
  const SamplePhoto photo{.width = 64, .height = 48, .orientation = 6};
  const Path path = writeFile(folder / "a.png", pngPhoto(photo));
  const QImage image = MyCreateCGImageFromFile(path);
  ASSERT_EQ(image.size(), QSize(64, 48));
  const Bytes pixels = samplePixels(64, 48);
  EXPECT_TRUE(showsEverywhere(image, [&](int x, int y) {
    const std::size_t at = static_cast<std::size_t>((47 - y) * 64 + x) * 3;
    return qRgb(pixels[at], pixels[at + 1], pixels[at + 2]);
  }));
}

TEST(CreateImageFromFile, ReportsThatThereIsNoSource) {
  const TemporaryFolder folder;
  const auto createFrom = [](const Path& path) {
    return errorOutputOf([&] { EXPECT_TRUE(MyCreateCGImageFromFile(path).isNull()); });
  };
  EXPECT_EQ(createFrom(folder / "missing.jpg"), "Image source is NULL.");
  EXPECT_EQ(createFrom(folder.path()), "Image source is NULL.");
  ASSERT_EQ(mkfifo((folder / "pipe.jpg").c_str(), 0600), 0);
  EXPECT_EQ(createFrom(folder / "pipe.jpg"), "Image source is NULL.");
}

TEST(CreateImageFromFile, ReportsThatTheSourceHoldsNoImage) {
  const TemporaryFolder folder;
  Bytes truncated = jpegPhoto({});
  truncated.resize(truncated.size() / 2);
  for (const Path& path : {writeFile(folder / "text.jpg", "no photo"), writeFile(folder / "empty.jpg", ""),
                           writeFile(folder / "half.jpg", truncated)}) {
    EXPECT_EQ(errorOutputOf([&] { EXPECT_TRUE(MyCreateCGImageFromFile(path).isNull()); }),
              "Image not created from image source.");
  }
}

TEST(CreateImageFromFile, DoesNotExpandATilde) {
  const TemporaryFolder folder;
  const EnvironmentVariable home("HOME", folder.path().c_str());
  writeFile(folder / "photo.jpg", jpegPhoto({}));
  ASSERT_FALSE(MyCreateCGImageFromFile(folder / "photo.jpg").isNull());
  EXPECT_EQ(errorOutputOf([] { EXPECT_TRUE(MyCreateCGImageFromFile("~/photo.jpg").isNull()); }),
            "Image source is NULL.");
}

TEST(CreateThumbnailFromData, HasTheSameSizeWhateverSizeIsAskedFor) {
  const Bytes photo = jpegPhoto({.thumbnail = true});
  const QImage small = MyCreateThumbnailImageFromData(photo, 160);
  EXPECT_FALSE(small.isNull());
  EXPECT_EQ(small, MyCreateThumbnailImageFromData(photo, 4000));
}

TEST(CreateThumbnailFromData, IsTheEmbeddedOneWhereThereIsOne) {
  for (const bool bigEndian : {false, true}) {
    const Bytes photo = jpegPhoto({.bigEndian = bigEndian, .thumbnail = true});
    const QImage thumbnail = MyCreateThumbnailImageFromData(photo, 4000);
    EXPECT_LT(thumbnail.width(), 640);
    EXPECT_GT(thumbnail.width(), 0);
  }
}

TEST(CreateThumbnailFromData, IsTheOneInThePhotosOwnExifBlockOfAnyFormat) {
  EXPECT_EQ(MyCreateThumbnailImageFromData(pngPhoto({.thumbnail = true}), 0).size(), QSize(160, 120));
  TiffBlock tiff = exifBlock({.thumbnail = true});
  claimSize(tiff, 20, 10);
  EXPECT_EQ(MyCreateThumbnailImageFromData(tiff.encode(), 0).size(), QSize(160, 120));
}

TEST(CreateThumbnailFromData, IsTheWholeImageWhereNoneIsEmbedded) {
  EXPECT_EQ(MyCreateThumbnailImageFromData(jpegPhoto({}), 160).size(), QSize(640, 480));
  EXPECT_EQ(MyCreateThumbnailImageFromData(pngPhoto({}), 160).size(), QSize(640, 480));
  EXPECT_EQ(MyCreateThumbnailImageFromData(tiffPhoto({}), 160).size(), QSize(640, 480));
}

TEST(CreateThumbnailFromData, IsTheWholeImageWhereTheEmbeddedOneIsBroken) {
  Bytes photo = jpegPhoto({.thumbnail = true});
  const Bytes startOfImage{0xff, 0xd8, 0xff};
  const auto embedded = std::search(photo.begin() + 3, photo.end(), startOfImage.begin(), startOfImage.end());
  ASSERT_NE(embedded, photo.end());
  *embedded = 0;
  EXPECT_EQ(MyCreateThumbnailImageFromData(photo, 160).size(), QSize(640, 480));
}

TEST(CreateThumbnailFromData, StandsUprightForAllOrientations) {
  const QImage stored = MyCreateThumbnailImageFromData(pngPhoto({.width = 32, .height = 24}), 0);
  ASSERT_EQ(stored.size(), QSize(32, 24));
  // Where the pixel seen at (x, y) is stored, both counted from the top left (TIFF 6.0, Orientation).
  const auto storedAt = [&](int orientation, int x, int y) {
    switch (orientation) {
      case 2:
        return stored.pixel(31 - x, y);
      case 3:
        return stored.pixel(31 - x, 23 - y);
      case 4:
        return stored.pixel(x, 23 - y);
      case 5:
        return stored.pixel(y, x);
      case 6:
        return stored.pixel(y, 23 - x);
      case 7:
        return stored.pixel(31 - y, 23 - x);
      case 8:
        return stored.pixel(31 - y, x);
      default:
        return stored.pixel(x, y);
    }
  };
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const QImage seen =
        MyCreateThumbnailImageFromData(pngPhoto({.width = 32, .height = 24, .orientation = orientation}), 0);
    ASSERT_EQ(seen.size(), orientation < 5 ? QSize(32, 24) : QSize(24, 32));
    EXPECT_TRUE(showsEverywhere(seen, [&](int x, int y) {
      return storedAt(orientation, x, seen.height() - 1 - y);
    })) << orientation;
  }
}

TEST(CreateThumbnailFromData, TurnsTheEmbeddedOneByTheOrientationOfTheFile) {
  const QImage stored = MyCreateThumbnailImageFromData(jpegPhoto({.thumbnail = true}), 0);
  const QImage seen = MyCreateThumbnailImageFromData(jpegPhoto({.orientation = 8, .thumbnail = true}), 0);
  ASSERT_EQ(seen.size(), stored.size().transposed());
  EXPECT_TRUE(showsEverywhere(
      seen, [&](int x, int y) { return stored.pixel(stored.width() - 1 - (seen.height() - 1 - y), x); }));
}

TEST(CreateThumbnailFromData, ReportsThatThereIsNoSourceOrNoThumbnail) {
  const auto createFrom = [](const Bytes& data) {
    return errorOutputOf([&] { EXPECT_TRUE(MyCreateThumbnailImageFromData(data, 160).isNull()); });
  };
  EXPECT_EQ(createFrom({}), "Image source is NULL.");
  EXPECT_EQ(createFrom({'n', 'o'}), "Thumbnail image not created from image source.");
  EXPECT_EQ(createFrom({0xff, 0xd8, 0xff, 0xe1, 0xff, 0xff}),
            "Thumbnail image not created from image source.");
}

TEST(WriteImage, WritesEachTypeSoThatItReadsBack) {
  const TemporaryFolder folder;
  const QImage pattern = patternBitmap(40, 30);
  writeCGImage(pattern, folder / "a", "public.png");
  EXPECT_EQ(MyCreateCGImageFromFile(folder / "a").convertToFormat(pattern.format()), pattern);
  writeCGImage(pattern, folder / "a", "public.tiff");  // replaces the existing file
  EXPECT_TRUE(readFile(folder / "a").starts_with("II*"));
  EXPECT_EQ(MyCreateCGImageFromFile(folder / "a").convertToFormat(pattern.format()), pattern);
  writeCGImage(pattern, folder / "b", "public.jpeg");
  EXPECT_TRUE(readFile(folder / "b").starts_with("\xff\xd8\xff"));
  EXPECT_EQ(MyCreateCGImageFromFile(folder / "b").size(), QSize(40, 30));
}

TEST(WriteImage, HeedsTheQuality) {
  const TemporaryFolder folder;
  const QImage photo = MyCreateThumbnailImageFromData(jpegPhoto({}), 0);
  const EncodingProperties low{.compressionFactor = 0.1F};
  writeCGImage(photo, folder / "low", "public.jpeg", &low);
  writeCGImage(photo, folder / "usual", "public.jpeg");
  saveJPEGImage(photo, folder / "best");
  EXPECT_LT(file_size(folder / "low"), file_size(folder / "usual"));
  EXPECT_LT(file_size(folder / "usual"), file_size(folder / "best"));
}

TEST(WriteImage, DoesNothingWhereNoDestinationCanBeMade) {
  const TemporaryFolder folder;
  const QImage pattern = patternBitmap(4, 3);
  EXPECT_EQ(errorOutputOf([&] {
              writeCGImage(pattern, folder / "none" / "a", "public.jpeg");
              writeCGImage(pattern, folder / "a", "public.unheard-of");
              writeCGImage(QImage(), folder / "a", "public.jpeg");
              saveJPEGImage(pattern, folder / "none" / "a");
              saveJPEGImage(QImage(), folder / "a");
            }),
            "");
  EXPECT_EQ(filesBelow(folder.path()), std::vector<std::string>());
}

TEST(SaveJpegImage, KeepsColoursAsCloseAsAJpegCan) {
  const TemporaryFolder folder;
  const QImage photo = MyCreateThumbnailImageFromData(pngPhoto({}), 0);
  saveJPEGImage(photo, folder / "a.jpg");
  EXPECT_TRUE(looksLike(MyCreateCGImageFromFile(folder / "a.jpg"), photo, byTheBestJpeg));
}

}  // namespace kestrova
