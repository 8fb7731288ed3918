#include "report/row.h"
#include "report/run_folder.h"
#include "support/process.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <chrono>
#include <map>

#include <gmock/gmock.h>

// Runs `organise --verify` of the real program.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using report::FileRow;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using Words = std::vector<std::string>;

/// Files of one size that agree in as many bytes as a scan compares.
std::string fileWithLast(char last) {
  std::string contents(50'000, 'x');
  contents.back() = last;
  return contents;
}

class CliVerify : public testing::Test {
 protected:
  ProcessResult organise(const Words& more = {"--verify"}) const {
    Words words{KESTROVA_CLI, "organise", card, "--to", tree, "--folders", "short"};
    words.insert(words.end(), more.begin(), more.end());
    return runProcess(words, {.environment = {"TZ=UTC", "LC_ALL=C", "TERM=dumb",
                                              "XDG_STATE_HOME=" + (root / "state").native()}});
  }
  /// Last modified on 21 May 2014 at 13:45:02 UTC.
  Path writeDated(const char* name, const std::string& contents) const {
    const Path path = writeFile(card / name, contents);
    const auto modified = std::chrono::sys_seconds(std::chrono::seconds(1400679902));
    fs::last_write_time(path, std::chrono::file_clock::from_sys(modified));
    return path;
  }
  /// The rows of the last run, by source.
  std::map<Path, FileRow> rows() const {
    const Path runs = root / "state/kestrova/runs";
    std::map<Path, FileRow> rows;
    const auto read =
        report::readRows(report::rowsFile(runs / report::runIds(runs).at(0)), [&](const auto& row) {
          if (const auto* file = std::get_if<FileRow>(&row)) rows[file->source] = *file;
          return true;
        });
    EXPECT_TRUE(read);
    return rows;
  }
  static std::string riskLine(const Path& file, const std::string& reason) {
    return "kestrova-cli: at risk: " + file.native() + ": " + reason +
           "; copy it as it is with \"check --rescue\"\n";
  }

  TemporaryFolder root;
  Path card = root / "card";
  Path tree = root / "tree";
};

}  // namespace

TEST_F(CliVerify, SaysThatEveryFileIsWhole) {
  const Path film = writeDated("1.mov", "one");
  writeFile(card / "2.jpg", jpegPhoto({.width = 2000, .height = 1500, .orientation = 6}));
  const auto result = organise({"--verify", "--size", "720p"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("\nVerified: every file is whole in the target\nCompleted ("));
  EXPECT_EQ(rows()[film].sourceSha256.size(), 64U);
  EXPECT_EQ(rows()[film].targetSha256, rows()[film].sourceSha256);
  EXPECT_EQ(organise({"--verify", "--size", "720p"}).status, 0) << "the record proves what exists";
}

TEST_F(CliVerify, NamesADuplicateThatIsNone) {
  writeDated("1.jpg", fileWithLast('1'));
  const Path other = writeDated("2.jpg", fileWithLast('2'));
  const auto result = organise();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            riskLine(other, "differs from what stands for it: \"" + (card / "1.jpg").native() + '"'));
  EXPECT_THAT(result.out, HasSubstr("\nAt risk: 1 ("));
  EXPECT_THAT(rows()[other].atRisk, HasSubstr("differs"));
  EXPECT_EQ(rows()[card / "1.jpg"].atRisk, "");
}

TEST_F(CliVerify, NamesWhatHasTheNameOfAnother) {
  writeDated("1.jpg", "one");
  const Path other = writeDated("2.jpg", "two");
  EXPECT_EQ(organise().err, riskLine(other, "another file has its name in the target"));
  EXPECT_EQ(organise().err, riskLine(other, "another file has its name in the target"))
      << "in the next run too";
}

TEST_F(CliVerify, CountsWhatIsAtRiskInJson) {
  writeDated("1.jpg", "one");
  writeDated("2.jpg", "two");
  const auto json =
      QJsonDocument::fromJson(QByteArray::fromStdString(organise({"--verify", "--json"}).out)).object();
  EXPECT_EQ(json[QLatin1String("atRisk")][QLatin1String("files")].toInt(), 1);
  EXPECT_EQ(json[QLatin1String("atRisk")][QLatin1String("bytes")].toInt(), 3);
  const auto without = QJsonDocument::fromJson(QByteArray::fromStdString(organise({"--json"}).out)).object();
  EXPECT_FALSE(without.contains(QLatin1String("atRisk")));
}

TEST_F(CliVerify, NeedsNoRecord) {
  writeDated("1.jpg", "one");
  const Path other = writeDated("2.jpg", "two");
  const auto result = organise({"--verify", "--no-record"});
  EXPECT_EQ(result.err, riskLine(other, "another file has its name in the target"));
  EXPECT_FALSE(fs::exists(root / "state/kestrova/runs"));
}

TEST_F(CliVerify, CompletesTheReportToo) {
  writeDated("1.jpg", "one");
  writeDated("2.jpg", "two");
  for (const char* name : {"report.ndjson", "report.csv"}) {
    const Path report = root / name;
    organise({"--verify", "--report", report});
    EXPECT_THAT(readFile(report), AllOf(HasSubstr("another file has its name"), EndsWith("\n")));
  }
  EXPECT_THAT(filesBelow(root / "state"), testing::Not(testing::Contains(EndsWith(".new"))));
}

TEST_F(CliVerify, DoesNotPassWhereTheRecordIsMissing) {
  writeDated("1.jpg", "one");
  writeFile(root / "state", "in the way");
  const auto result = organise();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("cannot be verified"));
}

TEST_F(CliVerify, WritesSumsThatOtherProgramsAccept) {
  writeDated("1.jpg", "one");
  writeDated("sub/2.mov", "two!");
  const Path sums = root / "sums";
  EXPECT_EQ(organise({"--checksums", sums}).status, 0);
  const Words check{"sha256sum", "--check", "--strict", sums};
  const auto checked = runProcess(check, {.currentFolder = tree});
  EXPECT_EQ(checked.status, 0) << checked.err;
  EXPECT_EQ(std::count(checked.out.begin(), checked.out.end(), '\n'), 2);
  writeFile(tree / filesBelow(tree).at(0), "bad");
  EXPECT_EQ(runProcess(check, {.currentFolder = tree}).status, 1);
}

TEST_F(CliVerify, SaysWhyTheSumsCannotBeWritten) {
  writeDated("1.jpg", "one");
  const auto result = organise({"--checksums", root / "missing/sums"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("the checksums were not written"));
}

}  // namespace kestrova::test
