#include "report/row_replacement.h"

#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using test::readFile;
using test::writeFile;
using testing::ElementsAre;

const Row row = UnreadableRow{.source = "/card", .reason = "Permission denied"};

/// A replacement of the file that gets one row.
RowReplacement begunWithRow(const Path& file) {
  auto replacement = RowReplacement::begin(file).value();
  replacement.add(row);
  return replacement;
}

TEST(RowReplacement, TakesTheFilesPlaceAllAtOnce) {
  const test::TemporaryFolder folder;
  const Path file = writeFile(folder / "report.ndjson", "old\n");
  RowReplacement replacement = begunWithRow(file);
  EXPECT_EQ(readFile(file), "old\n");
  EXPECT_TRUE(replacement.finish());
  EXPECT_EQ(readFile(file), lineOf(row));
  EXPECT_THAT(test::filesBelow(folder.path()), ElementsAre("report.ndjson"));
}

TEST(RowReplacement, LeavesNothingBehindWhenItIsGivenUp) {
  const test::TemporaryFolder folder;
  const Path file = writeFile(folder / "report.ndjson", "old\n");
  { ASSERT_TRUE(RowReplacement::begin(file)); }
  EXPECT_EQ(readFile(file), "old\n");
  EXPECT_THAT(test::filesBelow(folder.path()), ElementsAre("report.ndjson"));
}

TEST(RowReplacement, KeepsTheFilesFormat) {
  const test::TemporaryFolder folder;
  const Path file = writeFile(folder / "report.csv", "old\n");
  EXPECT_TRUE(begunWithRow(file).finish());
  EXPECT_THAT(readFile(file), testing::HasSubstr("/card"));
  EXPECT_THAT(readFile(file), testing::Not(testing::HasSubstr("{")));
}

TEST(RowReplacement, PassesOverWhatACrashLeftBehind) {
  const test::TemporaryFolder folder;
  const Path file = writeFile(folder / "report.ndjson", "old\n");
  writeFile(folder / "report.ndjson.new", "half a li");
  auto replacement = RowReplacement::begin(file);
  ASSERT_TRUE(replacement);
  EXPECT_TRUE(replacement->finish());
  EXPECT_EQ(readFile(file), "");
}

TEST(RowReplacement, SaysWhyItCannotBegin) {
  EXPECT_EQ(RowReplacement::begin("/missing/a").error().code, ENOENT);
}

}  // namespace

}  // namespace kestrova::report
