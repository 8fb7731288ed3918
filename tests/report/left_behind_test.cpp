#include "report/left_behind.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using testing::ElementsAre;
using testing::Key;

TEST(LeftBehind, IsCountedByExtensionInAnyCase) {
  LeftBehind files;
  files.add("IMG_1.HEIC", 10);
  files.add("IMG_2.heic", 20);
  files.add("IMG_1.xmp", 3);
  files.add("README", 5);
  EXPECT_THAT(files.byExtension(), ElementsAre(Key(""), Key("heic"), Key("xmp")));
  EXPECT_EQ(files.byExtension().at("heic").files, 2);
  EXPECT_EQ(files.byExtension().at("heic").bytes, 30);
  EXPECT_EQ(files.total().files, 4);
  EXPECT_EQ(files.total().bytes, 38);
}

TEST(LeftBehind, ListsTheMostFrequentFirst) {
  LeftBehind files;
  for (const char* name : {"a.xmp", "b.heic", "c.heic", "d"}) files.add(name, 1);
  EXPECT_EQ(summaryOf(files), "2 HEIC, 1 without extension, 1 XMP");
  EXPECT_EQ(summaryOf(files, 1), "2 HEIC and 2 others");
  EXPECT_EQ(summaryOf(files, 2), "2 HEIC, 1 without extension and 1 other");
  EXPECT_EQ(summaryOf({}), "");
}

TEST(LeftBehind, IsSafeForATerminal) {
  LeftBehind files;
  files.add("a.\x1B[2J", 1);
  EXPECT_EQ(summaryOf(files), "1 \\x1b[2J");
}

}  // namespace

}  // namespace kestrova::report
