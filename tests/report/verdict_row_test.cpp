#include "report/verdict_row.h"

#include <gtest/gtest.h>

namespace kestrova::report {

namespace {

Verdict rewrittenPhoto() {
  return {.outcome = Outcome::resized,
          .source = "/card/a.jpg",
          .target = "/pictures/2014/05/21/PHOTO.JPG",
          .sourceSize = 3000,
          .targetSize = 200,
          .sourceModified = Date{1400679902, 5},
          .targetModified = Date{1400679903, 0},
          .date = NamingDate{{.year = 2014, .month = 5, .day = 21, .hour = 13, .minute = 45, .second = 2},
                             DateOrigin::digitised},
          .pagesLeftOut = 2,
          .sourceSha256 = "aa",
          .targetSha256 = "bb",
          .createdFolders = {"2014"}};
}

}  // namespace

TEST(VerdictRow, HoldsWhatTheVerdictSays) {
  const FileRow row = rowOf(rewrittenPhoto(), "/pictures");
  EXPECT_EQ(row.source, Path("/card/a.jpg"));
  EXPECT_EQ(row.verdict, Outcome::resized);
  EXPECT_EQ(row.target, Path("2014/05/21/PHOTO.JPG"));
  EXPECT_EQ(row.sourceSize, 3000U);
  EXPECT_EQ(row.targetSize, 200U);
  EXPECT_EQ(row.sourceModified, "1400679902000000005");
  EXPECT_EQ(row.targetModified, "1400679903000000000");
  EXPECT_EQ(row.date, "2014-05-21T13:45:02");
  EXPECT_EQ(row.dateFrom, "digitised");
  EXPECT_EQ(row.sourceSha256, "aa");
  EXPECT_EQ(row.targetSha256, "bb");
  EXPECT_EQ(row.pagesLeftOut, 2);
  EXPECT_EQ(row.createdFolders, std::vector<Path>{"2014"});
}

TEST(VerdictRow, NamesTheReasonAndTheFileThatStandsForIt) {
  const Verdict verdict{.outcome = Outcome::duplicate, .source = "/a", .original = "/b", .error = "why"};
  const FileRow row = rowOf(verdict, "/pictures");
  EXPECT_EQ(row.original, Path("/b"));
  EXPECT_EQ(row.reason, "why");
  EXPECT_EQ(row.target, std::nullopt);
  EXPECT_EQ(row.date, "");
}

TEST(VerdictRow, KeepsATargetThatIsNotBelowTheFolder) {
  const Verdict verdict{.source = "/a", .target = "/pictures2/x.jpg"};
  EXPECT_EQ(rowOf(verdict, "/pictures").target, Path("/pictures2/x.jpg"));
  EXPECT_EQ(rowOf(verdict, "/").target, Path("pictures2/x.jpg"));
}

}  // namespace kestrova::report
