#include "cli/cli_folders.h"

#include <utility>

#include <gmock/gmock.h>

// What the program does and says, run as its users run it.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string usageError(const std::string& reason) {
  return "kestrova-cli: " + reason + "\nTry \"kestrova-cli --help\" for help.\n";
}

}  // namespace

TEST(Cli, OrganisesFilesIntoADatedTree) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "12345");
  writeDatedFile(folders.in / "b/c.MOV", "1234567");
  writeDatedFile(folders.in / "b/again.jpg", "12345");
  writeDatedFile(folders.in / "notes.txt", "not organised");
  const auto result = folders.organise();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, AllOf(StartsWith("Found "), HasSubstr("\nCompleted (")));
  EXPECT_THAT(filesBelow(folders.out), ElementsAre(photoName(5), "2014/05/21/VIDEO_20140521134502_7.MOV"));
  EXPECT_EQ(readFile(folders.out / photoName(5)), "12345");
  EXPECT_THAT(filesBelow(folders.in), ElementsAre("a.jpg", "b/again.jpg", "b/c.MOV", "notes.txt"));
}

TEST(Cli, CopiesNothingTwice) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  writeDatedFile(folders.in / "b.jpg", "22");
  ASSERT_EQ(folders.organise().status, 0);
  const QJsonObject again = folders.summary();
  EXPECT_EQ(totalFiles(again, "written"), 0);
  EXPECT_EQ(files(again, "alreadyThere"), 2);
}

TEST(Cli, PrintsTheSummaryAsOneJsonObject) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", std::string(30000, 'a'));
  writeDatedFile(folders.in / "copy.jpg", std::string(30000, 'a'));
  writeDatedFile(folders.in / "second.jpg", std::string(30000, 'b'));
  writeDatedFile(folders.in / "second again.jpg", std::string(30000, 'b'));
  writeDatedFile(folders.in / "small.jpg", "s");
  writeDatedFile(folders.in / "film.mp4", "film");
  const QJsonObject summary = folders.summary({"--skip-small-photos"});
  EXPECT_EQ(summary[QLatin1String("status")].toString(), QStringLiteral("Completed"));
  EXPECT_EQ(summary[QLatin1String("result")].toString(), QStringLiteral("completed"));
  EXPECT_TRUE(summary[QLatin1String("seconds")].isDouble());
  EXPECT_EQ(totalFiles(summary, "found"), 4);
  EXPECT_EQ(files(summary, "duplicates"), 1);
  EXPECT_EQ(files(summary, "passedOver"), 1);
  EXPECT_EQ(files(summary, "small"), 1);
  EXPECT_EQ(totalFiles(summary, "written"), 2);
  EXPECT_EQ(files(summary, "exists"), 1) << "second.jpg has the size and the date of a.jpg";
  EXPECT_EQ(files(summary, "failed"), 0);
  EXPECT_EQ(files(summary, "notReached"), 0);
  EXPECT_EQ(summary[QLatin1String("written")][QLatin1String("photos")][QLatin1String("bytes")].toInt(),
            30000);
}

TEST(Cli, HasNothingToDoInAnEmptyFolder) {
  const Folders folders;
  fs::create_directory(folders.in);
  const auto result = folders.organise();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, EndsWith("\nNothing to organise was found.\n"));
  EXPECT_FALSE(fs::exists(folders.out));
}

TEST(Cli, FollowsTheChoiceOfMediaAndFormats) {
  const Folders folders;
  for (const char* name : {"a.jpg", "bb.tif", "ccc.png", "dddd.avi"}) writeDatedFile(folders.in / name, name);
  EXPECT_EQ(totalFiles(folders.summary({"--media", "videos"}), "found"), 1);
  EXPECT_EQ(totalFiles(folders.summary({"--media", "photos", "--photo-formats", "jpeg+tiff"}), "found"), 2);
  EXPECT_EQ(totalFiles(folders.summary({"--photo-formats=jpeg+tiff+png"}), "found"), 4);
}

TEST(Cli, NamesFoldersAsAsked) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  run({"organise", folders.in, "--to", folders.out / "long"});
  run({"organise", folders.in, "--to", folders.out / "medium", "--folders=medium"});
  EXPECT_THAT(filesBelow(folders.out),
              ElementsAre("long/2014/05/21-May-2014 Wednesday/PHOTO_20140521134502_1.JPG",
                          "medium/2014/05/21-May Wednesday/PHOTO_20140521134502_1.JPG"));
}

TEST(Cli, SaysNothingWhenQuiet) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  const auto result = folders.organise({"--quiet"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST(Cli, LogsOnStandardErrorWhenAsked) {
  const Folders folders;
  writeDatedFile(folders.in / "a\x1b[2J\n.jpg", "1");
  const auto result = folders.organise({"--log"});
  EXPECT_THAT(result.err, AllOf(HasSubstr("NEW : " + folders.in.native() + "/a\\x1b[2J\\n.jpg : 1\n"),
                                HasSubstr("Copy successful\n"), Not(HasSubstr("\x1b"))));
}

TEST(Cli, RefusesWrongUsage) {
  const Folders folders;
  const Path file = writeFile(folders.root / "file", "");
  const std::string missing = folders.root / "missing";
  const std::vector<std::pair<Words, std::string>> cases{
      {{}, "no command is given: expected organise, check, undo or runs"},
      {{"organise", folders.in}, "no target folder is given: --to FOLDER names it"},
      {{"organise", missing, "--to", folders.out}, '"' + missing + "\": No such file or directory"},
      {{"organise", file, "--to", folders.out}, '"' + file.native() + "\": this source is not a folder"},
      {{"organise", folders.root.path(), "--to", file},
       '"' + file.native() + "\": this target is not a folder"},
  };
  for (const auto& [words, reason] : cases) {
    const auto result = run(words);
    EXPECT_EQ(result.status, 2) << reason;
    EXPECT_EQ(result.err, usageError(reason));
    EXPECT_EQ(result.out, "");
  }
  EXPECT_FALSE(fs::exists(folders.out));
}

TEST(Cli, AnswersQuestionsOnStandardOutput) {
  const auto help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, HasSubstr("kestrova-cli organise SOURCE... --to TARGET"));
  const auto version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_THAT(version.out, testing::MatchesRegex("kestrova-cli [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(help.err + version.err, "");
}

TEST(Cli, TakesNamesOfAnyBytes) {
  const Folders folders;
  const Path source = folders.root / "in \xff\n";
  const Path target = folders.root / "out \xfe\x1b";
  writeDatedFile(source / "\xc3.jpg", "1");
  writeDatedFile(source / "line\nend.jpg", "22");
  writeDatedFile(source / (std::string(251, 'n') + ".jpg"), "333");
  writeDatedFile(source / "\x80\x81" / "deep.jpg", "4444");
  const auto result = run({"organise", source, "--to", target, "--folders", "short"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(filesBelow(target), ElementsAre(photoName(1), photoName(2), photoName(3), photoName(4)));
  EXPECT_EQ(readFile(target / photoName(3)), "333");
}

TEST(Cli, TakesRelativePathsFromTheCallersFolder) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  auto options = inUtc;
  options.currentFolder = folders.in;
  const auto result =
      runProcess(commandOf({"organise", ".", "--to", "../out", "--folders", "short"}), options);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(filesBelow(folders.out), ElementsAre(photoName(1)));
}

TEST(Cli, CountsAFileOfTwoSourcesOnce) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  writeDatedFile(folders.in / "sub/b.jpg", "22");
  const QJsonObject summary = folders.summary({folders.in / "sub"});
  EXPECT_EQ(totalFiles(summary, "written"), 2);
  EXPECT_EQ(files(summary, "duplicates"), 1);
  EXPECT_THAT(filesBelow(folders.out), ElementsAre(photoName(1), photoName(2)));
}

TEST(Cli, TakesATargetInsideASource) {
  Folders folders;
  folders.out = folders.in / "organised";
  writeDatedFile(folders.in / "a.jpg", "1");
  writeDatedFile(folders.in / "z.jpg", "22");
  EXPECT_EQ(totalFiles(folders.summary(), "written"), 2);
  EXPECT_EQ(totalFiles(folders.summary(), "written"), 0);
  EXPECT_THAT(filesBelow(folders.in),
              ElementsAre("a.jpg", "organised/" + photoName(1), "organised/" + photoName(2), "z.jpg"));
}

TEST(Cli, NamesTheFilesThatItCouldNotWrite) {
  const Folders folders;
  writeDatedFile(folders.in / "a\x1b\xff.jpg", "1");
  writeDatedFile(folders.in / "b.jpg", "22");
  writeFile(folders.in / "new.jpg", "333");
  writeFile(folders.out / "2014", "a file in the way");
  const auto result = folders.organise({"--quiet"});
  EXPECT_EQ(result.status, 1);
  const std::string begin = "kestrova-cli: not written: " + folders.in.native();
  EXPECT_EQ(result.err, begin + "/a\\x1b\\xff.jpg: Not a directory\n" + begin + "/b.jpg: Not a directory\n");
  EXPECT_THAT(filesBelow(folders.out), testing::SizeIs(2));
  EXPECT_THAT(folders.organise().out, HasSubstr("\nCompleted, but not all files could be written ("));
}

TEST(Cli, KeepsNoSettings) {
  const Folders folders;
  const Path home = folders.root / "home";
  writeDatedFile(folders.in / "a.jpg", "1");
  fs::create_directory(home);
  auto options = inUtc;
  options.environment.push_back("HOME=" + home.native());
  options.environment.push_back("XDG_CONFIG_HOME=" + home.native());
  EXPECT_EQ(runProcess(commandOf({"organise", folders.in, "--to", folders.out}), options).status, 0);
  EXPECT_THAT(filesBelow(home), Each(StartsWith(".local/state/kestrova/runs/")));
}

}  // namespace kestrova::test
