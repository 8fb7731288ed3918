#include "platform/append_file.h"
#include "report/row.h"
#include "support/process.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

// What the real program tells of its runs afterwards.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Words = std::vector<std::string>;

class CliRecord : public testing::Test {
 protected:
  CliRecord() {
    writeFile(in / "a.jpg", "1");
    writeFile(in / "b.jpg", "22");
    writeFile(in / "c.HEIC", "333");
    writeFile(in / "d.heic", "4444");
    writeFile(in / "noname", "5");
  }
  ProcessResult run(Words words) const {
    words.insert(words.begin(), KESTROVA_CLI);
    return runProcess(words, {.environment = {"TZ=UTC", "LC_ALL=C", "XDG_STATE_HOME=" + state.native()}});
  }
  ProcessResult organise(const Words& more = {}) const {
    Words words{"organise", in, "--to", out, "--folders", "short"};
    words.insert(words.end(), more.begin(), more.end());
    return run(words);
  }
  QJsonObject summary(const Words& more = {}) const {
    Words words{"--json"};
    words.insert(words.end(), more.begin(), more.end());
    return QJsonDocument::fromJson(QByteArray::fromStdString(organise(words).out)).object();
  }
  /// The only record is then as a run leaves it that has not ended. Returns its folder.
  Path takeEndAway() const {
    const Path info = state / filesBelow(state).at(1);
    auto begun = QJsonDocument::fromJson(QByteArray::fromStdString(readFile(info))).object();
    for (const char* key : {"ended", "result", "counts"}) begun.remove(QLatin1String(key));
    writeFile(info, QJsonDocument(begun).toJson().toStdString());
    return info.parent_path();
  }
  QJsonArray runs() const {
    return QJsonDocument::fromJson(QByteArray::fromStdString(run({"runs", "--json"}).out)).array();
  }

  TemporaryFolder root;
  Path in = root / "in";
  Path out = root / "out";
  Path state = root / "state";
};

}  // namespace

TEST_F(CliRecord, WritesTheRowsElsewhereToo) {
  const Path file = root / "rows.ndjson";
  ASSERT_EQ(organise({"--report", file}).status, 0);
  const std::string rows = readFile(file);
  EXPECT_EQ(std::ranges::count(rows, '\n'), 5);
  EXPECT_THAT(rows, HasSubstr("\"verdict\":\"copied\""));
  const auto recorded = filesBelow(state);
  ASSERT_THAT(recorded, SizeIs(2));
  EXPECT_EQ(readFile(state / recorded[0]), rows);
}

TEST_F(CliRecord, WritesTheRowsAsATable) {
  const Path file = root / "rows.csv";
  ASSERT_EQ(organise({"--no-record", "--report=" + file.native()}).status, 0);
  EXPECT_THAT(readFile(file), AllOf(StartsWith("kind,verdict,source"), HasSubstr("\nfile,copied,")));
}

TEST_F(CliRecord, RefusesAReportThatIsThereOrOfAnotherKind) {
  const Path file = writeFile(root / "rows.csv", "mine");
  EXPECT_EQ(organise({"--report", file}).status, 2);
  EXPECT_EQ(readFile(file), "mine");
  EXPECT_EQ(organise({"--report", root / "rows.txt"}).status, 2);
  EXPECT_EQ(organise({"--report", root / "missing/rows.csv"}).status, 2);
  EXPECT_FALSE(fs::exists(out));
}

TEST_F(CliRecord, KeepsNoRecordWhereNoneIsWanted) {
  ASSERT_EQ(organise({"--no-record"}).status, 0);
  EXPECT_FALSE(fs::exists(state));
  EXPECT_THAT(runs(), IsEmpty());
}

TEST_F(CliRecord, SaysThatARunIsNotRecordedAndGoesOn) {
  writeFile(state, "a file in its way");
  const auto result = organise();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "kestrova-cli: the run is not recorded to its end: Not a directory\n");
  EXPECT_THAT(filesBelow(out), SizeIs(2));
}

TEST_F(CliRecord, ListsTheRunsFromTheNewestOn) {
  EXPECT_THAT(runs(), IsEmpty());
  organise();
  writeFile(in / "new.jpg", "4444444");
  organise();
  const QJsonArray list = runs();
  ASSERT_EQ(list.size(), 2);
  const QJsonObject newest = list[0].toObject();
  EXPECT_EQ(newest[QLatin1String("result")].toString(), QStringLiteral("completed"));
  EXPECT_EQ(newest[QLatin1String("target")].toString().toStdString(), out.native());
  EXPECT_EQ(newest[QLatin1String("sources")][0].toString().toStdString(), in.native());
  EXPECT_EQ(newest[QLatin1String("written")][QLatin1String("files")].toInt(), 1);
  EXPECT_EQ(newest[QLatin1String("written")][QLatin1String("bytes")].toInt(), 7);
  EXPECT_EQ(list[1][QLatin1String("written")][QLatin1String("files")].toInt(), 2);
  EXPECT_FALSE(newest[QLatin1String("id")].toString().isEmpty());
  EXPECT_FALSE(newest[QLatin1String("started")].toString().isEmpty());
  EXPECT_FALSE(newest[QLatin1String("ended")].toString().isEmpty());
  EXPECT_THAT(run({"runs"}).out, AllOf(HasSubstr("completed"), HasSubstr(out.native())));
}

TEST_F(CliRecord, ListsARunThatBrokeOff) {
  organise();
  takeEndAway();
  const QJsonArray list = runs();
  ASSERT_EQ(list.size(), 1);
  EXPECT_EQ(list[0][QLatin1String("result")].toString(), QStringLiteral("broken-off"));
  EXPECT_EQ(list[0][QLatin1String("written")][QLatin1String("files")].toInt(), 2);
}

TEST_F(CliRecord, ListsARunThatIsGoingOn) {
  organise();
  const Path rows = takeEndAway() / "report.ndjson";
  fs::remove(rows);
  const auto writer = AppendFile::create(rows);
  ASSERT_TRUE(writer);
  EXPECT_EQ(runs()[0][QLatin1String("result")].toString(), QStringLiteral("running"));
  EXPECT_THAT(run({"runs"}).out, HasSubstr("running"));
}

TEST_F(CliRecord, ListsTheBytesOfSourcesThatAreNotUtf8) {
  const Path odd = root / "card\xff";
  writeFile(odd / "a.jpg", "1");
  run({"organise", in, odd, "--to", out});
  organise();
  const QJsonArray list = runs();
  ASSERT_EQ(list.size(), 2);
  EXPECT_FALSE(list[0].toObject().contains(QLatin1String("sourcesBytes")));
  const QJsonArray bytes = list[1][QLatin1String("sourcesBytes")].toArray();
  ASSERT_EQ(bytes.size(), 2);
  EXPECT_EQ(QByteArray::fromBase64(bytes[0].toString().toLatin1()).toStdString(), in.native());
  EXPECT_EQ(QByteArray::fromBase64(bytes[1].toString().toLatin1()).toStdString(), odd.native());
}

TEST_F(CliRecord, SaysWhatWasLeftBehind) {
  EXPECT_THAT(organise().out, HasSubstr("\nLeft behind: 2 HEIC, 1 without extension\n"));
  const QJsonObject left = summary()[QLatin1String("leftBehind")].toObject();
  EXPECT_EQ(left[QLatin1String("heic")][QLatin1String("files")].toInt(), 2);
  EXPECT_EQ(left[QLatin1String("heic")][QLatin1String("bytes")].toInt(), 7);
  EXPECT_EQ(left[QLatin1String("")][QLatin1String("files")].toInt(), 1);
  EXPECT_EQ(left.size(), 2);
}

TEST_F(CliRecord, SaysWhichFilesBelongToWhatWasLeftBehind) {
  writeFile(in / "a.xmp", "sidecar");
  writeFile(in / "c.MOV", "live");
  const auto result = organise();
  EXPECT_THAT(result.out, HasSubstr("\nOf these, sidecars of photos and videos that were found: 1\n"));
  EXPECT_THAT(result.out, HasSubstr("\nLive photos of which only the video was found: 1\n"));
  const QJsonObject again = summary();
  EXPECT_EQ(again[QLatin1String("sidecarsLeftBehind")].toInt(), 1);
  EXPECT_EQ(again[QLatin1String("videosWithoutStill")].toInt(), 1);
}

TEST_F(CliRecord, TouchesNothingInADryRun) {
  const QJsonObject dry = summary({"--dry-run", "--report", root / "dry.csv"});
  EXPECT_TRUE(dry[QLatin1String("dryRun")].toBool());
  EXPECT_EQ(dry[QLatin1String("written")][QLatin1String("total")][QLatin1String("files")].toInt(), 2);
  EXPECT_EQ(dry[QLatin1String("spaceNeeded")].toInt(), 3);
  EXPECT_GT(dry[QLatin1String("spaceFree")].toInteger(), 0);
  EXPECT_THAT(readFile(root / "dry.csv"), HasSubstr("\nfile,copied,"));
  EXPECT_FALSE(fs::exists(out));
  EXPECT_FALSE(fs::exists(state));
  EXPECT_THAT(organise({"--dry-run"}).out, HasSubstr("\nNothing was written. Free space needed: 0.00 MB, "));
}

TEST_F(CliRecord, NamesFoldersThatOverlapAndGoesOn) {
  const auto result = run({"organise", in, in, "--to", in / "out"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "kestrova-cli: the target \"" + (in / "out").native() + "\" lies in the source \"" +
                            in.native() + "\": what it holds is found again\n" + "kestrova-cli: \"" +
                            in.native() +
                            "\" is listed twice: its files count as duplicates of themselves\n");
}

TEST_F(CliRecord, FailsWhereAFolderCannotBeListed) {
  // A folder whose names cannot be read: only for a program that has given up root's rights.
  const Path locked = root / "only/locked";
  fs::create_directories(locked);
  fs::permissions(locked, fs::perms::none);
  Words words{"organise", root / "only", "--to", out};
  if (geteuid() == 0) {
    words.insert(words.begin(), {"setpriv", "--bounding-set=-dac_override,-dac_read_search",
                                 "--inh-caps=-dac_override,-dac_read_search", KESTROVA_CLI});
  } else {
    words.insert(words.begin(), KESTROVA_CLI);
  }
  const auto result = runProcess(words, {.environment = {"LC_ALL=C", "XDG_STATE_HOME=" + state.native()}});
  fs::permissions(locked, fs::perms::owner_all);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "kestrova-cli: not readable: " + locked.native() + ": Permission denied\n");
  EXPECT_THAT(result.out, HasSubstr("Nothing to organise was found, but not all folders could be read.\n"));
}

}  // namespace kestrova::test
