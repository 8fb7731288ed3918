#include "support/temporary_folder.h"
#include "support/test_pattern.h"
#include "toolkit/HBPanel.h"

#include <gtest/gtest.h>

// A file that is replaced keeps its bytes under its other name; one that is written into does not.

namespace kestrova {

namespace {

class AtomicWriting : public testing::Test {
 protected:
  AtomicWriting() { std::filesystem::create_hard_link(path, otherName); }

  test::TemporaryFolder folder;
  const Path path = test::writeFile(folder / "a.jpg", "old");
  const Path otherName = folder / "b.jpg";
  const ImagePtr image = test::imageOf(test::patternBitmap(4, 3));
};

}  // namespace

TEST_F(AtomicWriting, IsHowSaveImageReplacesAFile) {
  EXPECT_TRUE(HBPanel::saveImage(Image(QSizeF()), *image, imaging::ImageType::jpeg, {}, path));
  EXPECT_TRUE(test::readFile(path).starts_with("\xff\xd8\xff"));
  EXPECT_EQ(test::readFile(otherName), "old");
}

TEST_F(AtomicWriting, IsNotHowSaveAsJpegWithNameOverwritesAFile) {
  HBPanel::saveAsJpegWithName(*image, path);
  EXPECT_TRUE(test::readFile(path).starts_with("\xff\xd8\xff"));
  EXPECT_EQ(test::readFile(otherName), test::readFile(path));
}

}  // namespace kestrova
