#include "toolkit/Rotated.h"

#include "support/environment_variable.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "support/test_pattern.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrova {

using namespace Rotated;
using test::colorAt;
using test::imageOf;
using test::patternBitmap;
using test::patternColor;
using test::SamplePhoto;
using test::showsEverywhere;
using test::TemporaryFolder;

namespace {

/// What `call` writes to standard error.
template <typename Call>
std::string errorOutputOf(Call call) {
  testing::internal::CaptureStderr();
  call();
  return testing::internal::GetCapturedStderr();
}

const char* const otherAngleNotice =
    "This code has only been tested for multiples of 90 degrees. (TODO: test and remove this line)\n";

}  // namespace

TEST(ImageRotated, ReturnsTheReceiverItselfForFullTurns) {
  const ImagePtr image = imageOf(patternBitmap(4, 3));
  EXPECT_EQ(errorOutputOf([&] {
              EXPECT_EQ(imageRotated(image, 0), image);
              EXPECT_EQ(imageRotated(image, 360), image);
              EXPECT_EQ(imageRotated(image, -720), image);
            }),
            "");
  EXPECT_EQ(image->size(), QSizeF(4, 3));
}

TEST(ImageRotated, TurnsAQuarterCounterClockwise) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  for (const float degrees : {90.0F, -270.0F, 450.0F}) {
    const ImagePtr turned = imageRotated(image, degrees);
    EXPECT_EQ(turned->size(), QSizeF(29, 40));
    EXPECT_EQ(turned->bestRepresentation().size(), QSize(29, 40));
    EXPECT_TRUE(showsEverywhere(turned->bestRepresentation(), [](int x, int y) {
      return patternColor(y, 28 - x);
    })) << degrees;
  }
}

TEST(ImageRotated, TurnsByAHalf) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  for (const float degrees : {180.0F, -180.0F, 540.0F}) {
    const ImagePtr turned = imageRotated(image, degrees);
    EXPECT_EQ(turned->bestRepresentation().size(), QSize(40, 29));
    EXPECT_TRUE(showsEverywhere(turned->bestRepresentation(), [](int x, int y) {
      return patternColor(39 - x, 28 - y);
    })) << degrees;
  }
}

TEST(ImageRotated, TurnsAQuarterClockwise) {
  const ImagePtr image = imageOf(patternBitmap(41, 30));
  for (const float degrees : {270.0F, -90.0F, -450.0F}) {
    const ImagePtr turned = imageRotated(image, degrees);
    EXPECT_EQ(turned->bestRepresentation().size(), QSize(30, 41));
    EXPECT_TRUE(showsEverywhere(turned->bestRepresentation(), [](int x, int y) {
      return patternColor(40 - y, x);
    })) << degrees;
  }
}

TEST(ImageRotated, ExchangesTheSidesOfTheSizeForAQuarterTurn) {
  EXPECT_EQ(imageRotated(imageOf(patternBitmap(400, 300)), 90)->size(), QSizeF(300, 400));
}

TEST(ImageRotated, DrawsAnyOtherAngleIntoAWiderSquareAfterANotice) {
  const ImagePtr image = imageOf(patternBitmap(400, 300));
  ImagePtr turned;
  EXPECT_EQ(errorOutputOf([&] { turned = imageRotated(image, 45); }), otherAngleNotice);
  EXPECT_EQ(turned->size(), QSizeF(420, 420));
  EXPECT_EQ(qAlpha(colorAt(turned, 0, 0)), 0);
  EXPECT_EQ(qAlpha(colorAt(turned, 419, 0)), 0);
  EXPECT_EQ(qAlpha(colorAt(turned, 210, 210)), 255);
}

TEST(ImageRotated, TurnsAnyOtherAngleCounterClockwiseAboutTheCentre) {
  QImage bitmap(100, 20, QImage::Format_RGB32);
  bitmap.fill(Qt::red);
  for (int y = 0; y < 20; ++y) {
    for (int x = 50; x < 100; ++x) bitmap.setPixel(x, y, qRgb(0, 0, 255));
  }
  const ImagePtr turned = imageRotated(imageOf(bitmap), 45);
  EXPECT_EQ(colorAt(turned, 60 + 25, 60 + 25), qRgb(0, 0, 255));  // the right half points up
  EXPECT_EQ(colorAt(turned, 60 - 25, 60 - 25), qRgb(255, 0, 0));
  EXPECT_EQ(qAlpha(colorAt(turned, 60 + 25, 60 - 25)), 0);
}

TEST(ImageRotated, TakesAnAngleThatIsNoNumberForAnyOtherAngle) {
  ImagePtr turned;
  const std::string said =
      errorOutputOf([&] { turned = imageRotated(imageOf(patternBitmap(8, 4)), std::nanf("")); });
  EXPECT_TRUE(said.starts_with(otherAngleNotice));
  EXPECT_EQ(turned->size(), QSizeF(28, 28));
}

TEST(SetImageAndFrame, GivesTheViewTheImagesSizeAndKeepsItsOrigin) {
  ImageView view{QRectF(10, 20, 300, 400), nullptr};
  const ImagePtr image = imageOf(patternBitmap(8, 5));
  setImageAndFrame(view, image);
  EXPECT_EQ(view.frame, QRectF(10, 20, 8, 5));
  EXPECT_EQ(view.image, image);
}

TEST(CreateImageFromFile, GivesThePixelsAsTheyAreStored) {
  const TemporaryFolder folder;
  const SamplePhoto photo{.width = 64, .height = 48, .orientation = 6};
  const Path path = test::writeFile(folder / "a.png", test::pngPhoto(photo));
  const QImage image = MyCreateCGImageFromFile(path);
  ASSERT_EQ(image.size(), QSize(64, 48));
  const Bytes pixels = test::samplePixels(64, 48);
  EXPECT_TRUE(showsEverywhere(image, [&](int x, int y) {
    const std::size_t at = static_cast<std::size_t>((47 - y) * 64 + x) * 3;
    return qRgb(pixels[at], pixels[at + 1], pixels[at + 2]);
  }));
}

TEST(CreateImageFromFile, TellsWhenThereIsNoSource) {
  const TemporaryFolder folder;
  const auto createFrom = [](const Path& path) {
    return errorOutputOf([&] { EXPECT_TRUE(MyCreateCGImageFromFile(path).isNull()); });
  };
  EXPECT_EQ(createFrom(folder / "missing.jpg"), "Image source is NULL.");
  EXPECT_EQ(createFrom(folder.path()), "Image source is NULL.");
  ASSERT_EQ(mkfifo((folder / "pipe.jpg").c_str(), 0600), 0);
  EXPECT_EQ(createFrom(folder / "pipe.jpg"), "Image source is NULL.");
}

TEST(CreateImageFromFile, TellsWhenTheSourceHoldsNoImage) {
  const TemporaryFolder folder;
  Bytes truncated = test::jpegPhoto({});
  truncated.resize(truncated.size() / 2);
  for (const Path& path :
       {test::writeFile(folder / "text.jpg", "no photo"), test::writeFile(folder / "empty.jpg", ""),
        test::writeFile(folder / "half.jpg", truncated)}) {
    EXPECT_EQ(errorOutputOf([&] { EXPECT_TRUE(MyCreateCGImageFromFile(path).isNull()); }),
              "Image not created from image source.");
  }
}

TEST(CreateImageFromFile, DoesNotExpandATilde) {
  const TemporaryFolder folder;
  const test::EnvironmentVariable home("HOME", folder.path().c_str());
  test::writeFile(folder / "photo.jpg", test::jpegPhoto({}));
  ASSERT_FALSE(MyCreateCGImageFromFile(folder / "photo.jpg").isNull());
  EXPECT_EQ(errorOutputOf([] { EXPECT_TRUE(MyCreateCGImageFromFile("~/photo.jpg").isNull()); }),
            "Image source is NULL.");
}

TEST(CreateThumbnailFromData, HasTheSameSizeWhateverSizeIsAskedFor) {
  const Bytes photo = test::jpegPhoto({.thumbnail = true});
  const QImage small = MyCreateThumbnailImageFromData(photo, 160);
  EXPECT_FALSE(small.isNull());
  EXPECT_EQ(small, MyCreateThumbnailImageFromData(photo, 4000));
}

TEST(CreateThumbnailFromData, IsTheEmbeddedOneWhereThereIsOne) {
  for (const bool bigEndian : {false, true}) {
    const Bytes photo = test::jpegPhoto({.bigEndian = bigEndian, .thumbnail = true});
    const QImage thumbnail = MyCreateThumbnailImageFromData(photo, 4000);
    EXPECT_LT(thumbnail.width(), 640);
    EXPECT_GT(thumbnail.width(), 0);
  }
}

TEST(CreateThumbnailFromData, IsTheOneInThePhotosOwnExifBlockOfAnyFormat) {
  EXPECT_EQ(MyCreateThumbnailImageFromData(test::pngPhoto({.thumbnail = true}), 0).size(), QSize(160, 120));
  test::TiffBlock tiff = test::exifBlock({.thumbnail = true});
  test::claimSize(tiff, 20, 10);
  EXPECT_EQ(MyCreateThumbnailImageFromData(tiff.encode(), 0).size(), QSize(160, 120));
}

TEST(CreateThumbnailFromData, IsTheWholeImageWhereNoneIsEmbedded) {
  EXPECT_EQ(MyCreateThumbnailImageFromData(test::jpegPhoto({}), 160).size(), QSize(640, 480));
  EXPECT_EQ(MyCreateThumbnailImageFromData(test::pngPhoto({}), 160).size(), QSize(640, 480));
  EXPECT_EQ(MyCreateThumbnailImageFromData(test::tiffPhoto({}), 160).size(), QSize(640, 480));
}

TEST(CreateThumbnailFromData, IsTheWholeImageWhereTheEmbeddedOneIsBroken) {
  Bytes photo = test::jpegPhoto({.thumbnail = true});
  const Bytes startOfImage{0xff, 0xd8, 0xff};
  const auto embedded = std::search(photo.begin() + 3, photo.end(), startOfImage.begin(), startOfImage.end());
  ASSERT_NE(embedded, photo.end());
  *embedded = 0;
  EXPECT_EQ(MyCreateThumbnailImageFromData(photo, 160).size(), QSize(640, 480));
}

TEST(CreateThumbnailFromData, StandsUprightForAllOrientations) {
  const QImage stored = MyCreateThumbnailImageFromData(test::pngPhoto({.width = 32, .height = 24}), 0);
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
    const QImage seen = MyCreateThumbnailImageFromData(
        test::pngPhoto({.width = 32, .height = 24, .orientation = orientation}), 0);
    ASSERT_EQ(seen.size(), orientation < 5 ? QSize(32, 24) : QSize(24, 32));
    EXPECT_TRUE(showsEverywhere(seen, [&](int x, int y) {
      return storedAt(orientation, x, seen.height() - 1 - y);
    })) << orientation;
  }
}

TEST(CreateThumbnailFromData, TurnsTheEmbeddedOneByTheOrientationOfTheFile) {
  const QImage stored = MyCreateThumbnailImageFromData(test::jpegPhoto({.thumbnail = true}), 0);
  const QImage seen =
      MyCreateThumbnailImageFromData(test::jpegPhoto({.orientation = 8, .thumbnail = true}), 0);
  ASSERT_EQ(seen.size(), stored.size().transposed());
  EXPECT_TRUE(showsEverywhere(
      seen, [&](int x, int y) { return stored.pixel(stored.width() - 1 - (seen.height() - 1 - y), x); }));
}

TEST(CreateThumbnailFromData, TellsWhenThereIsNoSourceOrNoThumbnail) {
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
  writeCGImage(pattern, folder / "a", "public.tiff");  // in place of the file that is there
  EXPECT_TRUE(test::readFile(folder / "a").starts_with("II*"));
  EXPECT_EQ(MyCreateCGImageFromFile(folder / "a").convertToFormat(pattern.format()), pattern);
  writeCGImage(pattern, folder / "b", "public.jpeg");
  EXPECT_TRUE(test::readFile(folder / "b").starts_with("\xff\xd8\xff"));
  EXPECT_EQ(MyCreateCGImageFromFile(folder / "b").size(), QSize(40, 30));
}

TEST(WriteImage, HeedsTheQuality) {
  const TemporaryFolder folder;
  const QImage photo = MyCreateThumbnailImageFromData(test::jpegPhoto({}), 0);
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
  EXPECT_EQ(test::filesBelow(folder.path()), std::vector<std::string>());
}

TEST(SaveJpegImage, KeepsColoursAsCloseAsAJpegCan) {
  const TemporaryFolder folder;
  const QImage photo = MyCreateThumbnailImageFromData(test::pngPhoto({}), 0);
  saveJPEGImage(photo, folder / "a.jpg");
  EXPECT_TRUE(test::looksLike(MyCreateCGImageFromFile(folder / "a.jpg"), photo, 4));
}

}  // namespace kestrova
