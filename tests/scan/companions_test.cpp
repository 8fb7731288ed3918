#include "scan/companions.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

/// What was seen in the order of the walk: a "+" before what is taken, a "-" before what is left behind.
Companions seen(std::initializer_list<std::string_view> files) {
  Companions companions;
  for (const std::string_view file : files) companions.see(file.substr(1), file.front() == '+');
  companions.finish();
  return companions;
}

}  // namespace

TEST(Companions, AreSidecarsOfWhatWasTaken) {
  EXPECT_EQ(seen({"+/a/IMG_1.JPG", "-/a/IMG_1.XMP", "-/a/IMG_2.xmp", "+/a/IMG_3.jpg"}).sidecars(), 1);
  EXPECT_EQ(seen({"-/a/IMG_1.AAE", "+/a/IMG_1.JPG", "-/a/IMG_1.txt"}).sidecars(), 1);
  EXPECT_EQ(seen({"+/a/film.MOV", "-/a/film.thm"}).sidecars(), 1);
}

TEST(Companions, MayHaveTheWholeNameOfTheirFile) {
  EXPECT_EQ(seen({"+/a/IMG_1.JPG", "-/a/IMG_1.JPG.xmp"}).sidecars(), 1);
}

TEST(Companions, AreNotFilesOfOtherFoldersOrNames) {
  EXPECT_EQ(seen({"+/a/IMG_1.JPG", "-/b/IMG_1.XMP"}).sidecars(), 0);
  EXPECT_EQ(seen({"+/a/my.first.jpg", "-/a/my.second.xmp"}).sidecars(), 0);
  EXPECT_EQ(seen({"-/a/IMG_1.HEIC", "-/a/IMG_1.XMP"}).sidecars(), 0);
}

TEST(Companions, AreVideosWhoseStillWasLeftBehind) {
  EXPECT_EQ(seen({"-/a/IMG_1.HEIC", "+/a/IMG_1.MOV"}).videosWithoutStill(), 1);
  EXPECT_EQ(seen({"+/a/IMG_1.MOV", "-/a/IMG_1.heic"}).videosWithoutStill(), 1);
  EXPECT_EQ(seen({"-/a/IMG_1.HEIC", "+/a/IMG_2.MOV"}).videosWithoutStill(), 0);
  EXPECT_EQ(seen({"-/a/IMG_1.HEIC", "-/a/IMG_1.MOV"}).videosWithoutStill(), 0);
  EXPECT_EQ(seen({"-/a/IMG_1.HEIC", "+/a/IMG_1.JPG"}).videosWithoutStill(), 0);
}

}  // namespace kestrova
