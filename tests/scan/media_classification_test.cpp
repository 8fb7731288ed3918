#include "scan/media_classification.h"

#include "support/headless_program.h"
#include "toolkit/PKStringAdditions.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

bool isInList(PhotoFormats formats, const char* extension) {
  return photoExtensions(formats).holds(extension);
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
  EXPECT_TRUE(videoExtensions().holds("MOV"));
  EXPECT_TRUE(videoExtensions().holds("mkv"));
  EXPECT_FALSE(videoExtensions().holds("mp3"));
}

TEST(MediaClassification, TakesAnEmptyExtensionAsNeither) {
  EXPECT_FALSE(isInList(PhotoFormats::jpegTiffPng, ""));
  EXPECT_FALSE(videoExtensions().holds(""));
}

TEST(MediaClassification, MatchesAnExtensionWholeAndNotItsEnd) {
  EXPECT_FALSE(isInList(PhotoFormats::jpeg, "pg"));
}

TEST(MediaClassification, HasNoListWhereNoFormatsAreChosen) {
  EXPECT_TRUE(photoExtensions(PhotoFormats::none).isEmpty());
}

TEST(MediaClassification, FiltersByTheChoiceOfMedia) {
  const ExtensionList photos = photoExtensions(PhotoFormats::jpeg);
  const ExtensionList videos = videoExtensions();
  EXPECT_EQ(mediaFilter(Media::photosAndVideos, photos, videos).text(), photos.text() + u',' + videos.text());
  EXPECT_EQ(mediaFilter(Media::photos, photos, videos), photos);
  EXPECT_EQ(mediaFilter(Media::videos, photos, videos), videos);
}

TEST(MediaClassification, PassesOnlyJpgWhenNoMediaAreChosen) {
  const ExtensionList filter =
      mediaFilter(Media::none, photoExtensions(PhotoFormats::jpeg), videoExtensions());
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
  const Path dotted("/folder.d/name");
  const Path deep("/folder.d/name.Jpg");
  const Path bare("name.jpg");
  EXPECT_EQ(extensionOfPath(dotted), "");
  EXPECT_EQ(extensionOfPath(deep), "Jpg");
  EXPECT_EQ(extensionOfPath(bare), "jpg");
}

TEST(MediaClassification, FindsAnExtensionAsTextBetweenCommasWhateverItsLetters) {
  const ExtensionList list =
      mediaFilter(Media::photosAndVideos, photoExtensions(PhotoFormats::jpegTiffPng), videoExtensions());
  for (const char* extension : {"jpg", "JPEG", "mKv", "pg", "j", "jpg,jpeg", "(", ")", "m\xe2\x84\xaav",
                                "\xff", "p ng", "averyveryverylongextensionthatisplain", "jpg\n"}) {
    const QString whole = u',' + QString::fromUtf8(extension).toLower() + u',';
    EXPECT_EQ(list.holds(extension), PKStringAdditions::containsString(list.text(), whole)) << extension;
  }
}

TEST(MediaClassification, FollowsTheControllersLists) {
  test::HeadlessProgram program;
  auto& manager = program.manager();
  EXPECT_TRUE(manager.isPhoto("JPG"));
  EXPECT_FALSE(manager.isPhoto("png"));
  EXPECT_TRUE(manager.isVideo("MOV"));
  program.interface->comboPhotoFormats->chooseItem(2);
  EXPECT_TRUE(manager.isPhoto("png"));
}

}  // namespace kestrova
