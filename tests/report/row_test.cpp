#include "report/row.h"

#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

FileRow fullRow() {
  return {.source = "/media/card/DCIM/IMG_1.JPG",
          .verdict = Outcome::resized,
          .target = "2014/05/21/PHOTO_1.JPG",
          .sourceSize = 5'000'000'000,
          .targetSize = 300,
          .sourceModified = "253402300799123456789",
          .targetModified = "1400679902000000000",
          .date = "2014-05-21T13:45:02",
          .dateFrom = "digitised",
          .original = "/media/card/other.jpg",
          .sourceSha256 = "aa",
          .targetSha256 = "bb",
          .atRisk = "at risk",
          .reason = "No space left on device",
          .pagesLeftOut = 2};
}

FileRow readBack(const FileRow& row) { return std::get<FileRow>(rowOf(lineOf(row)).value()); }

TEST(RecordRow, ComesBackAsItWasWritten) {
  const FileRow row = fullRow();
  const FileRow read = readBack(row);
  EXPECT_EQ(read.source, row.source);
  EXPECT_EQ(read.verdict, row.verdict);
  EXPECT_EQ(read.target, row.target);
  EXPECT_EQ(read.sourceSize, row.sourceSize);
  EXPECT_EQ(read.targetSize, row.targetSize);
  EXPECT_EQ(read.sourceModified, row.sourceModified);
  EXPECT_EQ(read.targetModified, row.targetModified);
  EXPECT_EQ(read.date, row.date);
  EXPECT_EQ(read.dateFrom, row.dateFrom);
  EXPECT_EQ(read.original, row.original);
  EXPECT_EQ(read.sourceSha256, row.sourceSha256);
  EXPECT_EQ(read.targetSha256, row.targetSha256);
  EXPECT_EQ(read.atRisk, row.atRisk);
  EXPECT_EQ(read.reason, row.reason);
  EXPECT_EQ(read.pagesLeftOut, row.pagesLeftOut);
}

TEST(RecordRow, IsOneLineOfJsonWithoutWhatItDoesNotHave) {
  const std::string line = lineOf(FileRow{.source = "/a\nb.jpg", .verdict = Outcome::small});
  EXPECT_EQ(line, "{\"kind\":\"file\",\"source\":\"/a\\nb.jpg\",\"verdict\":\"small\"}\n");
}

TEST(RecordRow, HoldsEveryVerdictByItsWord) {
  const std::pair<Outcome, const char*> words[] = {
      {Outcome::copied, "copied"},
      {Outcome::resized, "resized"},
      {Outcome::rewritten, "rewritten"},
      {Outcome::duplicate, "duplicate"},
      {Outcome::sameContent, "same-content"},
      {Outcome::small, "small"},
      {Outcome::exists, "exists"},
      {Outcome::nameTaken, "name-taken"},
      {Outcome::failed, "failed"},
      {Outcome::unreadable, "unreadable"},
      {Outcome::notReached, "not-reached"},
  };
  for (const auto& [outcome, word] : words) {
    const FileRow row{.source = "/a.jpg", .verdict = outcome};
    EXPECT_THAT(lineOf(row), HasSubstr("\"verdict\":\"" + std::string(word) + '"'));
    EXPECT_EQ(readBack(row).verdict, outcome);
  }
}

TEST(RecordRow, KeepsTheBytesOfANameThatIsNotUtf8) {
  const Path source("/card/\xFF\xFE.jpg");
  const std::string line = lineOf(UnreadableRow{source, "Permission denied"});
  EXPECT_THAT(line, HasSubstr("\"sourceBytes\":\"L2NhcmQv//4uanBn\""));
  EXPECT_EQ(std::get<UnreadableRow>(rowOf(line).value()).source, source);
  EXPECT_THAT(lineOf(UnreadableRow{"/card/\xC3\xA4.jpg", ""}), Not(HasSubstr("sourceBytes")));
}

TEST(RecordRow, MayReportAFileLeftBehind) {
  const auto row = std::get<LeftBehindRow>(rowOf(lineOf(LeftBehindRow{"/card/a.HEIC", "heic", 12})).value());
  EXPECT_EQ(row.source, "/card/a.HEIC");
  EXPECT_EQ(row.extension, "heic");
  EXPECT_EQ(row.sourceSize, 12U);
}

TEST(RecordRow, IsNothingIfTheLineIsNotARow) {
  for (const char* line : {"", "{", "[]", "{\"kind\":\"file\"}", "{\"kind\":\"new\",\"source\":\"/a\"}",
                           "{\"kind\":\"file\",\"source\":\"/a\",\"verdict\":\"new\"}"}) {
    EXPECT_FALSE(rowOf(line)) << line;
  }
}

struct RecordRows : testing::Test {
  test::TemporaryFolder folder;

  std::vector<std::string> sourcesIn(const std::string& contents, std::size_t most = 100'000) {
    std::vector<std::string> sources;
    const auto read = readRows(test::writeFile(folder / "rows", contents), [&](const Row& row) {
      sources.push_back(std::visit([](const auto& kind) { return kind.source.native(); }, row));
      return sources.size() < most;
    });
    EXPECT_TRUE(read);
    return sources;
  }
};

TEST_F(RecordRows, AreReadToTheLastWholeLine) {
  const std::string one = lineOf(FileRow{.source = "/1"});
  const std::string two = lineOf(UnreadableRow{"/2", ""});
  EXPECT_THAT(sourcesIn(one + two + one.substr(0, one.size() - 5)), ElementsAre("/1", "/2"));
  EXPECT_THAT(sourcesIn(one + "garbage\n" + two), ElementsAre("/1", "/2"));
  EXPECT_THAT(sourcesIn(one + two, 1), ElementsAre("/1"));
}

TEST_F(RecordRows, AreReadAcrossAllPiecesOfALargeFile) {
  std::string contents;
  for (int i = 0; i < 5000; ++i) contents += lineOf(FileRow{.source = '/' + std::to_string(i)});
  const auto sources = sourcesIn(contents);
  ASSERT_EQ(sources.size(), 5000U);
  for (std::size_t i = 0; i < sources.size(); ++i) EXPECT_EQ(sources[i], '/' + std::to_string(i));
}

TEST_F(RecordRows, SayWhyTheyCannotBeRead) {
  EXPECT_EQ(readRows(folder / "missing", [](const Row&) { return true; }).error().code, ENOENT);
}

}  // namespace

}  // namespace kestrova::report
