#include "scan/source_overlaps.h"

#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using Kind = Overlap::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Kind> kindsOf(const std::vector<Path>& sources, const Path& target) {
  std::vector<Kind> kinds;
  for (const Overlap& overlap : overlapsOf(sources, target)) kinds.push_back(overlap.kind);
  return kinds;
}

}  // namespace

TEST(SourceOverlaps, AreNoneBetweenFoldersApart) {
  EXPECT_THAT(kindsOf({"/x/a", "/x/ab", "/y"}, "/x/out"), IsEmpty());
}

TEST(SourceOverlaps, AreASourceListedTwice) {
  const auto overlaps = overlapsOf({"/x/a", "/x/b", "/x/./a"}, "/out");
  ASSERT_EQ(overlaps.size(), 1U);
  EXPECT_EQ(overlaps[0].kind, Kind::sourceTwice);
  EXPECT_EQ(overlaps[0].source, Path("/x/./a"));
  EXPECT_EQ(overlaps[0].other, Path("/x/a"));
}

TEST(SourceOverlaps, AreASourceInsideAnother) {
  const auto overlaps = overlapsOf({"/x/a/b", "/x/a"}, "/out");
  ASSERT_EQ(overlaps.size(), 1U);
  EXPECT_EQ(overlaps[0].kind, Kind::sourceInsideSource);
  EXPECT_EQ(overlaps[0].source, Path("/x/a/b"));
  EXPECT_EQ(overlaps[0].other, Path("/x/a"));
}

TEST(SourceOverlaps, AreSourcesThatMeetTheTarget) {
  EXPECT_THAT(kindsOf({"/out/a"}, "/out"), ElementsAre(Kind::sourceInsideTarget));
  EXPECT_THAT(kindsOf({"/x"}, "/x/out"), ElementsAre(Kind::targetInsideSource));
  EXPECT_THAT(kindsOf({"/x"}, "/x"), ElementsAre(Kind::targetIsSource));
}

TEST(SourceOverlaps, AreSeenThroughLinks) {
  const test::TemporaryFolder root;
  std::filesystem::create_directories(root / "in/below");
  std::filesystem::create_symlink(root / "in", root / "link");
  EXPECT_THAT(kindsOf({root / "link/below", root / "in"}, "/out"), ElementsAre(Kind::sourceInsideSource));
  EXPECT_THAT(kindsOf({root / "in"}, root / "link"), ElementsAre(Kind::targetIsSource));
}

}  // namespace kestrova
