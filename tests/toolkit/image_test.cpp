#include "toolkit/image.h"

#include "imaging/jpeg/jpeg_encoder.h"
#include "support/real_photos.h"
#include "support/sample_media.h"
#include "support/test_pattern.h"
#include "toolkit/image_canvas.h"
#include "toolkit/image_codec.h"

#include <QColorSpace>
#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova {

using imaging::ImageType;
using test::colorAt;
using test::imageOf;
using test::patternBitmap;
using test::patternColor;
using test::showsEverywhere;

namespace {

QImage onCanvas(const Image& image, QSizeF size, QPointF point = {}) {
  ImageCanvas canvas(size);
  canvas.draw(image, point, Composition::sourceOver);
  return canvas.finish()->bestRepresentation();
}

}  // namespace

TEST(Image, TreatsSidesThatAreNotLengthsAsZero) {
  EXPECT_EQ(Image(QSizeF(-1, std::nan(""))).size(), QSizeF(0, 0));
  EXPECT_EQ(Image(QSizeF(2.5, 1.25)).size(), QSizeF(2.5, 1.25));
}

TEST(Image, IsValidOnceItHasPixels) {
  Image image(QSizeF(4, 3));
  EXPECT_FALSE(image.isValid());
  image.addRepresentation(QImage());
  EXPECT_FALSE(image.isValid());
  image.addRepresentation(patternBitmap(4, 3));
  EXPECT_TRUE(image.isValid());
}

TEST(Image, CopiesEverythingAndThenGoesItsOwnWay) {
  const ImagePtr image = imageOf(patternBitmap(4, 3));
  image->setFlipped(true);
  image->setScalesWhenResized(true);
  const ImagePtr copied = image->copy();
  image->setSize(QSizeF(1, 1));
  EXPECT_EQ(copied->size(), QSizeF(4, 3));
  EXPECT_TRUE(copied->isFlipped());
  EXPECT_TRUE(copied->scalesWhenResized());
  EXPECT_EQ(copied->representations(), image->representations());
}

TEST(Image, IsCroppedByItsSizeUnlessItScales) {
  const ImagePtr image = imageOf(patternBitmap(40, 30));
  image->setSize(QSizeF(10, 5));
  const QImage cropped = onCanvas(*image, QSizeF(40, 30));
  EXPECT_TRUE(
      showsEverywhere(cropped, [](int x, int y) { return x < 10 && y < 5 ? patternColor(x, y) : 0; }));
  image->setSize(QSizeF(80, 60));
  image->setScalesWhenResized(true);
  EXPECT_EQ(qAlpha(colorAt(onCanvas(*image, QSizeF(80, 60)), 79, 59)), 255);
}

TEST(Image, IsDrawnUpsideDownWhenFlipped) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  image->setFlipped(true);
  EXPECT_TRUE(showsEverywhere(onCanvas(*image, QSizeF(40, 29)),
                              [](int x, int y) { return patternColor(x, 28 - y); }));
}

TEST(Image, LoadsEveryTypeUpright) {
  for (const Bytes& file : {test::jpegPhoto({.orientation = 6}), test::pngPhoto({.orientation = 6}),
                            test::tiffPhoto({.orientation = 6}),
                            test::tiffPhoto({.orientation = 6, .bigEndian = true, .bigTiff = true})}) {
    const ImagePtr image = Image::fromData(file);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), QSizeF(480, 640));
    EXPECT_EQ(image->representations().size(), 1U);
  }
}

TEST(Image, ShowsTheSamePictureFromEveryType) {
  const QImage png = decodeImage(test::pngPhoto({}));
  EXPECT_TRUE(test::looksLike(decodeImage(test::tiffPhoto({})), png, test::notAtAll));
  EXPECT_EQ(decodeImage(test::jpegPhoto({})).size(), png.size());
}

TEST(Image, LoadsThePagesOfATiffAsRepresentations) {
  const std::vector<QImage> pages{patternBitmap(10, 10), patternBitmap(40, 30), patternBitmap(20, 20)};
  const ImagePtr image = Image::fromData(*encodeTiff(pages));
  ASSERT_EQ(image->representations().size(), 3U);
  EXPECT_EQ(image->size(), QSizeF(40, 30));
  for (const QImage& page : image->representations()) EXPECT_TRUE(showsEverywhere(page, patternColor));
}

TEST(Image, DoesNotLoadWhatDoesNotDecodeWhole) {
  for (Bytes file : {test::jpegPhoto({}), test::pngPhoto({}), test::tiffPhoto({})}) {
    EXPECT_NE(Image::fromData(file), nullptr);
    file.resize(file.size() - file.size() / 4);
    EXPECT_EQ(Image::fromData(file), nullptr);
  }
  EXPECT_EQ(Image::fromData({}), nullptr);
  EXPECT_EQ(Image::fromFile("/no/such/file"), nullptr);
}

TEST(Image, RefusesAbsurdSizesByTheirHeaders) {
  Bytes png = test::pngPhoto({.exif = false});
  const auto header = test::pngChunk("IHDR", Bytes{0, 0, 0xea, 0x60, 0, 0, 0xea, 0x60, 8, 2, 0, 0, 0});
  std::copy(header.begin(), header.end(), png.begin() + 8);
  EXPECT_EQ(Image::fromData(png), nullptr);
  EXPECT_FALSE(isDecodableSize(60000, 60000, 4));
  EXPECT_FALSE(isDecodableSize(0, 10, 4));
  EXPECT_FALSE(isDecodableSize(std::int64_t{1} << 62, std::int64_t{1} << 62, 4));
  EXPECT_TRUE(isDecodableSize(16000, 15000, 4));
}

TEST(Image, SurvivesDamagedFilesInSilence) {
  std::mt19937 random(1);
  testing::internal::CaptureStderr();
  for (const Bytes& whole :
       {test::jpegPhoto({.width = 40, .height = 30, .thumbnail = true}),
        test::pngPhoto({.width = 40, .height = 30}), test::tiffPhoto({.width = 40, .height = 30})}) {
    for (int i = 0; i < 1000; ++i) {
      Bytes file = whole;
      for (int change = 0; change < 3; ++change)
        file[random() % file.size()] = static_cast<std::uint8_t>(random());
      file.resize(file.size() - random() % (i % 2 == 0 ? 1 : file.size()));
      const ImagePtr image = Image::fromData(file);
      EXPECT_TRUE(image == nullptr || image->isValid());
      static_cast<void>(decodeEmbeddedThumbnail(file));
    }
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

using ImagesOfRealPhotos = test::RealPhotosTest;

TEST_F(ImagesOfRealPhotos, LoadOrAreRefusedInSilence) {
  testing::internal::CaptureStderr();
  int loaded = 0;
  int refused = 0;
  for (const auto& photo : photos()) {
    const ImagePtr image = Image::fromFile(photo);
    ++(image != nullptr ? loaded : refused);
    EXPECT_TRUE(image == nullptr || image->isValid()) << photo;
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_GT(loaded, refused);
  RecordProperty("loaded", loaded);
  RecordProperty("refused", refused);
}

TEST(ImageCodec, KeepsTheColourSpaceThroughEveryType) {
  QImage image = patternBitmap(40, 30);
  image.setColorSpace(QColorSpace::AdobeRgb);
  for (const ImageType type : {ImageType::jpeg, ImageType::png, ImageType::tiff}) {
    EXPECT_EQ(decodeImage(*encodeImage(image, type)).colorSpace(), QColorSpace(QColorSpace::AdobeRgb));
  }
}

TEST(ImageCodec, KeepsSixteenBitsASampleInAPng) {
  for (const QImage::Format format :
       {QImage::Format_Grayscale16, QImage::Format_RGBX64, QImage::Format_RGBA64}) {
    QImage deep(300, 2, format);
    for (int x = 0; x < 300; ++x) {
      for (const int y : {0, 1})
        deep.setPixelColor(x, y,
                           QColor::fromRgba64(QRgba64::fromRgba64(static_cast<quint16>(x * 217 + y),
                                                                  static_cast<quint16>(x * 217 + y),
                                                                  static_cast<quint16>(x * 217 + y), 65535)));
    }
    EXPECT_EQ(decodeImage(*encodeImage(deep, ImageType::png)), deep);
  }
}

TEST(ImageCodec, ReadsPalettesAndSingleBits) {
  for (const QImage::Format format : {QImage::Format_Indexed8, QImage::Format_Mono}) {
    const QImage few = patternBitmap(40, 30).convertToFormat(format);
    EXPECT_TRUE(test::looksLike(decodeImage(*encodeImage(few, ImageType::png)), few, test::notAtAll));
    EXPECT_TRUE(test::looksLike(decodeImage(*encodeImage(few, ImageType::tiff)), few, test::notAtAll));
  }
}

/// A JPEG of one colour, given by its four inks.
Bytes cmykJpeg(const std::array<std::uint8_t, 4>& inks) {
  imaging::JpegPlanes picture;
  picture.format.colorSpace = JCS_CMYK;
  picture.size = {16, 16};
  for (std::size_t i = 0; i < inks.size(); ++i) {
    picture.format.components.push_back({.id = static_cast<int>(i + 1)});
    imaging::Raster& plane = picture.planes.emplace_back(16, 16, 1);
    for (int y = 0; y < 16; ++y) std::fill_n(plane.row(y), 16, inks[i]);
  }
  constexpr int quality = 95;
  return imaging::encodeJpeg(picture, quality);
}

TEST(ImageCodec, ReadsTheColoursOfACmykJpeg) {
  const QImage plain = decodeImage(cmykJpeg({0, 255, 127, 0}));
  EXPECT_TRUE(test::isNear(plain.pixel(8, 8), qRgb(255, 0, 128), 3));
  Bytes inverted = cmykJpeg({255, 0, 128, 255});
  const Bytes adobe = test::jpegSegment(0xEE, Bytes{'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 0});
  inverted.insert(inverted.begin() + 2, adobe.begin(), adobe.end());
  EXPECT_TRUE(test::isNear(decodeImage(inverted).pixel(8, 8), qRgb(255, 0, 128), 3));
}

TEST(ImageCodec, KeepsGreyPicturesGrey) {
  const QImage grey = patternBitmap(40, 30).convertToFormat(QImage::Format_Grayscale8);
  for (const ImageType type : {ImageType::jpeg, ImageType::png, ImageType::tiff}) {
    EXPECT_TRUE(decodeImage(*encodeImage(grey, type, {.compressionFactor = 1})).allGray());
  }
}

TEST(ImageCodec, ShowsTransparencyAsWhiteInAJpeg) {
  QImage clear(16, 16, QImage::Format_ARGB32_Premultiplied);
  clear.fill(Qt::transparent);
  EXPECT_EQ(decodeImage(*encodeImage(clear, ImageType::jpeg)).pixel(8, 8), qRgb(255, 255, 255));
}

TEST(ImageCodec, WritesNothingForANullPictureOrOneTooLarge) {
  for (const ImageType type : {ImageType::jpeg, ImageType::png, ImageType::tiff}) {
    EXPECT_FALSE(encodeImage(QImage(), type));
  }
  EXPECT_FALSE(encodeImage(QImage(70000, 1, QImage::Format_RGB32), ImageType::jpeg));
}

TEST(ImageCanvas, HasItsOriginAtTheBottomLeft) {
  ImageCanvas canvas(QSizeF(20, 10));
  canvas.fillRect(QRectF(2, 1, 5, 3), Qt::red);
  EXPECT_TRUE(showsEverywhere(canvas.finish()->bestRepresentation(), [](int x, int y) {
    return x >= 2 && x < 7 && y >= 1 && y < 4 ? qRgb(255, 0, 0) : 0;
  }));
}

TEST(ImageCanvas, ComposesAsPorterAndDuffSay) {
  QImage half(10, 10, QImage::Format_ARGB32);
  half.fill(qRgba(0, 0, 255, 128));
  const auto composed = [&](Composition composition) {
    ImageCanvas canvas(QSizeF(10, 10));
    canvas.fillRect(QRectF(0, 0, 5, 10), Qt::red);
    canvas.draw(half, QRectF(0, 0, 10, 10), composition);
    return canvas.finish();
  };
  EXPECT_EQ(colorAt(composed(Composition::copy), 2, 2), qRgba(0, 0, 255, 128));
  EXPECT_EQ(colorAt(composed(Composition::copy), 7, 2), qRgba(0, 0, 255, 128));
  EXPECT_EQ(colorAt(composed(Composition::sourceIn), 2, 2), qRgba(0, 0, 255, 128));
  EXPECT_EQ(colorAt(composed(Composition::sourceIn), 7, 2), 0U);
  EXPECT_TRUE(test::isNear(colorAt(composed(Composition::sourceOver), 2, 2), qRgb(127, 0, 128), 1));
}

TEST(ImageCanvas, ConvertsOtherColourSpacesToItsOwn) {
  QImage bitmap(4, 4, QImage::Format_RGB32);
  bitmap.fill(qRgb(100, 200, 50));
  bitmap.setColorSpace(QColorSpace::AdobeRgb);
  const QRgb expected = bitmap.convertedToColorSpace(QColorSpace::SRgb).pixel(0, 0);
  ASSERT_NE(expected, bitmap.pixel(0, 0));
  EXPECT_EQ(colorAt(onCanvas(*imageOf(bitmap), QSizeF(4, 4)), 1, 1), expected);
}

TEST(ImageCanvas, IsNotValidWithoutAreaAndThenDrawsNothing) {
  ImageCanvas canvas(QSizeF(0, 10));
  EXPECT_FALSE(canvas.isValid());
  canvas.concat(QTransform().rotate(90));
  canvas.fillRect(QRectF(0, 0, 1, 1), Qt::red);
  canvas.draw(patternBitmap(4, 3), QRectF(0, 0, 4, 3), Composition::copy);
  EXPECT_FALSE(canvas.finish()->isValid());
}

}  // namespace kestrova
