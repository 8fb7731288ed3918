#include "scan/media_classification.h"

#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

bool isInList(PhotoFormats formats, const char* extension) {
  return listHoldsExtension(photoExtensions(formats), QString::fromUtf8(extension));
}

}  // namespace

TEST(MediaClassification, TakesAPhotoExtensionInAnyCase) {
  EXPECT_TRUE(isInList(PhotoFormats::jpeg, "JPG"));
  EXPECT_TRUE(isInList(PhotoFormats::jpeg, "jpg"));
  EXPECT_TRUE(isInList(PhotoFormats::jpeg, "Jpeg"));
}

TEST(MediaClassification, TakesTifOnlyWithJpegAndTiffAndPngOnlyWithAllThree) {
  EXPECT_FALSE(isInList(PhotoFormats::jpeg, "tif"));
  EXPECT_TRUE(isInList(PhotoFormats::jpegTiff, "tif"));
  EXPECT_TRUE(isInList(PhotoFormats::jpegTiffPng, "tif"));
  EXPECT_FALSE(isInList(PhotoFormats::jpeg, "png"));
  EXPECT_FALSE(isInList(PhotoFormats::jpegTiff, "png"));
  EXPECT_TRUE(isInList(PhotoFormats::jpegTiffPng, "png"));
}

TEST(MediaClassification, TakesMovAndMkvAsVideosButNotMp3) {
  EXPECT_TRUE(listHoldsExtension(videoExtensions(), QStringLiteral("MOV")));
  EXPECT_TRUE(listHoldsExtension(videoExtensions(), QStringLiteral("mkv")));
  EXPECT_FALSE(listHoldsExtension(videoExtensions(), QStringLiteral("mp3")));
}

TEST(MediaClassification, TakesAnEmptyExtensionAsNeither) {
  EXPECT_FALSE(isInList(PhotoFormats::jpegTiffPng, ""));
  EXPECT_FALSE(listHoldsExtension(videoExtensions(), QString()));
}

TEST(MediaClassification, MatchesAnExtensionWholeAndNotItsEnd) {
  EXPECT_FALSE(isInList(PhotoFormats::jpeg, "pg"));
}

TEST(MediaClassification, HasNoListWhereNoFormatsAreChosen) {
  EXPECT_TRUE(photoExtensions(PhotoFormats::none).isEmpty());
}

TEST(MediaClassification, FiltersByTheChoiceOfMedia) {
  const QString photos = photoExtensions(PhotoFormats::jpeg);
  const QString videos = videoExtensions();
  EXPECT_EQ(mediaFilter(Media::photosAndVideos, photos, videos), photos + u',' + videos);
  EXPECT_EQ(mediaFilter(Media::photos, photos, videos), photos);
  EXPECT_EQ(mediaFilter(Media::videos, photos, videos), videos);
}

TEST(MediaClassification, PassesOnlyJpgWhenNoMediaAreChosen) {
  const ExtensionFilter filter(
      mediaFilter(Media::none, photoExtensions(PhotoFormats::jpeg), videoExtensions()));
  EXPECT_TRUE(filter.accepts("a.jpg"));
  EXPECT_TRUE(filter.accepts("a.JPG"));
  EXPECT_FALSE(filter.accepts("a.avi"));
  EXPECT_FALSE(filter.accepts("a.mov"));
  EXPECT_FALSE(filter.accepts("a.jpeg"));
}

TEST(MediaClassification, ReadsAnExtensionAfterTheLastDotOfAName) {
  EXPECT_EQ(extensionOfName("IMG_1.JPG"), "JPG");
  EXPECT_EQ(extensionOfName("a.tar.jpg"), "jpg");
  EXPECT_EQ(extensionOfName("jpg"), "");
  EXPECT_EQ(extensionOfName(".jpg"), "");
  EXPECT_EQ(extensionOfName("a."), "");
  EXPECT_EQ(extensionOfName(".a.jpg"), "jpg");
  EXPECT_EQ(pathExtension(Path("/folder.d/name")), QString());
}

TEST(MediaClassification, AgreesWithTheListTestForEveryKindOfName) {
  const QString list =
      mediaFilter(Media::photosAndVideos, photoExtensions(PhotoFormats::jpegTiffPng), videoExtensions());
  const ExtensionFilter filter(list);
  for (const char* extension : {"jpg", "JPEG", "mKv", "pg", "j", "jpg,jpeg", "(", ")", "m\xe2\x84\xaav",
                                "\xff", "p ng", "averyveryverylongextensionthatisplain", "jpg\n"}) {
    const bool expected = listHoldsExtension(list, QString::fromUtf8(extension));
    EXPECT_EQ(filter.accepts(std::string("name.") + extension), expected) << extension;
  }
}

TEST(MediaClassification, FollowsTheControllersLists) {
  test::HeadlessProgram program;
  auto& manager = program.manager();
  EXPECT_TRUE(manager.isPhoto(QStringLiteral("JPG")));
  EXPECT_FALSE(manager.isPhoto(QStringLiteral("png")));
  EXPECT_TRUE(manager.isVideo(QStringLiteral("MOV")));
  program.interface->comboPhotoFormats->chooseItem(2);
  EXPECT_TRUE(manager.isPhoto(QStringLiteral("png")));
}

}  // namespace kestrova
