#include "report/row_file.h"

#include "report/csv_line.h"
#include "support/temporary_folder.h"

#include <thread>

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using test::readFile;
using testing::HasSubstr;
using testing::StartsWith;

const FileRow copied{.source = "/a.jpg", .verdict = Outcome::copied, .target = "b.jpg", .sourceSize = 3};
const LeftBehindRow left{.source = "/a, \"b\"\n.heic", .extension = "heic", .sourceSize = 7};

}  // namespace

TEST(RowFile, TellsItsFormatByTheName) {
  EXPECT_EQ(RowFile::formatOf("/x/a.ndjson"), RowFile::Format::ndjson);
  EXPECT_EQ(RowFile::formatOf("a.csv"), RowFile::Format::csv);
  EXPECT_EQ(RowFile::formatOf("a.json"), std::nullopt);
  EXPECT_EQ(RowFile::formatOf("csv"), std::nullopt);
}

TEST(RowFile, HoldsWhatWasAddedBeforeAFlush) {
  const test::TemporaryFolder folder;
  const auto rows = RowFile::create(folder / "a.ndjson", RowFile::Format::ndjson).value();
  rows->add(copied);
  rows->flush();
  EXPECT_EQ(readFile(folder / "a.ndjson"), lineOf(copied));
  rows->add(left);
  rows->flush();
  EXPECT_EQ(readFile(folder / "a.ndjson"), lineOf(copied) + lineOf(left));
  EXPECT_FALSE(rows->error());
}

TEST(RowFile, HoldsEachRowAfterAWhile) {
  const test::TemporaryFolder folder;
  const auto rows = RowFile::create(folder / "a.ndjson", RowFile::Format::ndjson).value();
  for (const Row& row : {Row(copied), Row(left)}) {
    const std::string before = readFile(folder / "a.ndjson");
    rows->add(row);
    while (readFile(folder / "a.ndjson") == before) std::this_thread::yield();
  }
  EXPECT_EQ(readFile(folder / "a.ndjson"), lineOf(copied) + lineOf(left));
}

TEST(RowFile, HoldsEveryRowInOrderWhenItIsClosed) {
  const test::TemporaryFolder folder;
  std::string lines;
  auto rows = RowFile::create(folder / "a.ndjson", RowFile::Format::ndjson).value();
  for (std::uint64_t size = 0; size < 2000; ++size) {
    const LeftBehindRow row{.source = "/a", .extension = "heic", .sourceSize = size};
    rows->add(row);
    lines += lineOf(row);
  }
  rows.reset();
  EXPECT_EQ(readFile(folder / "a.ndjson"), lines);
}

TEST(RowFile, BeginsATableWithTheNamesOfItsColumns) {
  const test::TemporaryFolder folder;
  const auto rows = RowFile::create(folder / "a.csv", RowFile::Format::csv).value();
  rows->add(copied);
  rows->flush();
  EXPECT_EQ(readFile(folder / "a.csv"), csvHeader() + csvLineOf(copied));
  EXPECT_THAT(csvHeader(), StartsWith("kind,verdict,source,target,"));
  EXPECT_THAT(csvLineOf(copied), StartsWith("file,copied,/a.jpg,b.jpg,3,,"));
}

TEST(RowFile, QuotesWhatWouldEndAFieldOfATable) {
  EXPECT_THAT(csvLineOf(left), StartsWith("left-behind,,\"/a, \"\"b\"\"\n.heic\",,7,"));
}

TEST(RowFile, ListsCreatedFoldersInOneFieldOfATable) {
  EXPECT_THAT(csvLineOf(FileRow{.source = "/a", .createdFolders = {"2014", "2014/05"}}),
              HasSubstr(",2014;2014/05,"));
}

TEST(RowFile, KeepsTheBytesOfNamesInATable) {
  EXPECT_THAT(csvLineOf(FileRow{.source = "/\xff"}), HasSubstr(",L/8="));
}

TEST(RowFile, ReplacesNothing) {
  const test::TemporaryFolder folder;
  test::writeFile(folder / "a.csv", "mine");
  const auto refused = RowFile::create(folder / "a.csv", RowFile::Format::csv);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().code, EEXIST);
  EXPECT_EQ(readFile(folder / "a.csv"), "mine");
}

}  // namespace kestrova::report
