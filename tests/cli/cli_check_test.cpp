#include "cli/cli_records.h"
#include "report/content.h"
#include "report/row.h"
#include "report/run_folder.h"
#include "report/run_info.h"
#include "support/sample_media.h"

#include <QJsonArray>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>

// Runs `check` of the real program.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class CliCheck : public CliRecords {
 protected:
  CliCheck() {
    fs::create_directories(card);
    fs::create_directories(tree);
  }
  Words checking(const Words& more = {}) const { return Words{"check", card, "--in", tree} + more; }
  ProcessResult check(const Words& more = {}) const { return run(checking(more)); }
  QJsonObject json() const { return jsonIn(check({"--json"})); }

  Path refuge = root / "refuge";
};

}  // namespace

TEST_F(CliCheck, SaysThatItIsSafeToErase) {
  for (int i = 0; i < 1204; ++i) {
    const std::string name = std::to_string(i);
    writeFile(card / (name + ".jpg"), name);
    writeFile(tree / "2014" / name, name);
  }
  const auto result = check();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "Safe to erase: all 1,204 photos and videos are in " + tree.native() + ".\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(CliCheck, NamesWhatIsMissingAndWhatWasLeftBehind) {
  for (const char* name : {"1.jpg", "2.mov", "3.png"}) writeFile(card / name, name);
  writeFile(card / "4.HEIC", "heic");
  writeFile(tree / "1.jpg", "1.jpg");
  const auto result = check();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.out, HasSubstr((card / "2.mov").native() + ": is not in the target\n"));
  EXPECT_THAT(result.out, HasSubstr("1 HEIC\n"));
  EXPECT_THAT(result.out, EndsWith("\nNOT safe to erase: 2 of 3 are not in " + tree.native() + ".\n"));
}

TEST_F(CliCheck, SpeaksJson) {
  writeFile(card / "1.jpg", "one");
  writeFile(card / "2.xmp", "sidecar");
  const QJsonObject missing = json();
  EXPECT_EQ(missing[QLatin1String("result")].toString(), QStringLiteral("not-safe"));
  EXPECT_EQ(missing[QLatin1String("files")].toInt(), 1);
  EXPECT_EQ(missing[QLatin1String("safe")].toInt(), 0);
  EXPECT_EQ(missing[QLatin1String("missing")].toArray().size(), 1);
  EXPECT_EQ(missing[QLatin1String("missing")][0][QLatin1String("source")].toString().toStdString(),
            card / "1.jpg");
  EXPECT_EQ(missing[QLatin1String("leftBehind")][QLatin1String("xmp")][QLatin1String("bytes")].toInt(), 7);
  writeFile(tree / "1.jpg", "one");
  EXPECT_EQ(json()[QLatin1String("result")].toString(), QStringLiteral("safe"));
}

TEST_F(CliCheck, RescuesWhatIsMissing) {
  writeFile(card / "DCIM/1.jpg", "one");
  writeFile(card / "DCIM/2.HEIC", "two");
  writeFile(card / "DCIM/3.jpg", "three");
  writeFile(tree / "3.jpg", "three");
  const auto result = check({"--rescue", refuge});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(filesBelow(refuge), ElementsAre("card/DCIM/1.jpg", "card/DCIM/2.HEIC"));
  EXPECT_THAT(result.out, EndsWith("\nSafe to erase: all 2 photos and videos are in " + tree.native() +
                                   " or " + refuge.native() + ".\n"));
}

TEST_F(CliCheck, SaysWhatCouldNotBeRescued) {
  writeFile(card / "1.jpg", "one");
  writeFile(refuge / "card/1.jpg", "another");
  const auto result = check({"--rescue", refuge});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "kestrova-cli: not rescued: " + (card / "1.jpg").native() +
                            ": another file has its name there\n");
  EXPECT_THAT(result.out, EndsWith("\nNOT safe to erase: 1 of 1 is not in " + tree.native() + ".\n"));
}

TEST_F(CliCheck, RecordsARescueAsARun) {
  writeFile(card / "1.jpg", "one");
  check({"--rescue", refuge});
  const auto ids = report::runIds(runs);
  ASSERT_EQ(ids.size(), 1U);
  const auto info = report::readRunInfo(*systemFileManager(), runs / ids[0]);
  ASSERT_TRUE(info);
  EXPECT_EQ(info->command, "rescue");
  EXPECT_EQ(info->result, "completed");
  EXPECT_EQ(info->target, refuge);
  EXPECT_THAT(info->sources, ElementsAre(card));
  EXPECT_THAT(readFile(report::rowsFile(runs / ids[0])), HasSubstr("\"target\":\"card/1.jpg\""));
}

TEST_F(CliCheck, LetsARescueBeTakenBack) {
  writeFile(card / "DCIM/1.jpg", "one");
  writeFile(card / "DCIM/2.HEIC", "two");
  writeFile(refuge / "mine", "mine");
  check({"--rescue", refuge});
  ASSERT_THAT(filesBelow(refuge), ElementsAre("card/DCIM/1.jpg", "card/DCIM/2.HEIC", "mine"));
  fs::remove(card / "DCIM/2.HEIC");
  const auto undone = run({"undo", "--delete"});
  EXPECT_EQ(undone.status, 1) << "one file is nowhere else any more";
  EXPECT_THAT(filesBelow(refuge), ElementsAre("card/DCIM/2.HEIC", "mine"));
  writeFile(card / "DCIM/2.HEIC", "two");
  EXPECT_EQ(run({"undo", "--delete"}).status, 0);
  EXPECT_THAT(filesBelow(refuge), ElementsAre("mine"));
  EXPECT_FALSE(fs::exists(refuge / "card"));
  EXPECT_THAT(filesBelow(card), ElementsAre("DCIM/1.jpg", "DCIM/2.HEIC"));
}

TEST_F(CliCheck, CountsAPhotoThatARecordBindsToItsRewrittenForm) {
  const Path photo = writeFile(card / "1.jpg", jpegPhoto({.width = 80, .height = 60}));
  const Path written = writeFile(tree / "2014/1.jpg", jpegPhoto({.width = 40, .height = 30}));
  EXPECT_EQ(check().status, 1);
  const Path run = report::createRunFolder(runs, std::chrono::sys_seconds()).value();
  ASSERT_TRUE(report::writeRunInfo(*systemFileManager(), run,
                                   {.command = "organise", .options = {}, .target = tree, .counts = {}}));
  const report::FileRow row{.source = photo,
                            .verdict = Outcome::resized,
                            .target = "2014/1.jpg",
                            .sourceSha256 = report::sha256Of(photo).value(),
                            .targetSha256 = report::sha256Of(written).value()};
  writeFile(report::rowsFile(run), report::lineOf(row));
  EXPECT_EQ(check().status, 0);
  writeFile(written, jpegPhoto({.width = 40, .height = 30, .seed = 1}));
  EXPECT_EQ(check().status, 1);
}

TEST_F(CliCheck, RefusesFoldersThatWouldGoWithTheSource) {
  const auto inside = run({"check", root.path(), "--in", tree});
  EXPECT_EQ(inside.status, 2);
  EXPECT_THAT(inside.err, HasSubstr("lies inside the source"));
  EXPECT_THAT(check({"--rescue", card / "refuge"}).err,
              HasSubstr("the rescue folder lies inside the source"));
  fs::remove_all(tree);
  const auto missing = check();
  EXPECT_EQ(missing.status, 2);
  EXPECT_THAT(missing.err, StartsWith("kestrova-cli: \"" + tree.native() + "\" is not a folder\nTry "));
}

TEST_F(CliCheck, EndsOnASignal) {
  // Too large to be compared at once; sparse, so that they take no room.
  for (const Path& folder : {card, tree}) {
    for (const char* name : {"1.mov", "2.mov", "3.mov"}) {
      writeFile(folder / name, name);
      fs::resize_file(folder / name, std::uintmax_t{1} << 36);
    }
  }
  for (const int signal : {SIGINT, SIGTERM}) {
    Process process(commandOf(checking()), environment());
    std::this_thread::sleep_for(std::chrono::seconds(1));
    process.send(signal);
    const auto result = process.wait();
    EXPECT_EQ(result.status, 130);
    EXPECT_THAT(result.out, EndsWith("NOT safe to erase: the check was stopped.\n"));
  }
}

TEST_F(CliCheck, EndsQuietlyWhenNobodyReadsOn) {
  for (int i = 0; i < 5000; ++i) writeFile(card / (std::to_string(i) + ".jpg"), std::to_string(i));
  const auto result = runProcess(
      {"sh", "-c", R"("$0" check "$1" --in "$2" | head -n 1)", KESTROVA_CLI, card, tree}, environment());
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
}

}  // namespace kestrova::test
