#include "support/process.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

// Runs the real program on trees of files that the tests make.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Words = std::vector<std::string>;

const ProcessOptions inUtc{.environment = {"TZ=UTC", "LC_ALL=C", "TERM=dumb"}};

Words commandOf(const Words& words) {
  Words command{KESTROVA_CLI};
  command.insert(command.end(), words.begin(), words.end());
  return command;
}

ProcessResult run(const Words& words) { return runProcess(commandOf(words), inUtc); }

/// A file last modified on 21 May 2014 at 13:45:02 UTC.
Path writeDatedFile(const Path& path, const std::string& contents) {
  writeFile(path, contents);
  const auto modified = std::chrono::sys_seconds(std::chrono::seconds(1400679902));
  fs::last_write_time(path, std::chrono::file_clock::from_sys(modified));
  return path;
}

/// The name under which a photo of that date and size ends up, in short folders.
std::string photoName(std::size_t size) {
  return "2014/05/21/PHOTO_20140521134502_" + std::to_string(size) + ".JPG";
}

struct Folders {
  TemporaryFolder root;
  Path in = root / "in";
  Path out = root / "out";

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
};

int files(const QJsonObject& summary, const char* name) {
  return summary[QLatin1String(name)].toObject()[QLatin1String("files")].toInt(-1);
}

int totalFiles(const QJsonObject& summary, const char* name) {
  return files(summary[QLatin1String(name)].toObject(), "total");
}

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
  const std::array<std::pair<Words, std::string>, 5> cases{{
      {{}, "no command is given: expected organise, check, undo or runs"},
      {{"organise", folders.in}, "no target folder is given: --to FOLDER names it"},
      {{"organise", missing, "--to", folders.out}, '"' + missing + "\": No such file or directory"},
      {{"organise", file, "--to", folders.out}, '"' + file.native() + "\": this source is not a folder"},
      {{"organise", folders.root.path(), "--to", file},
       '"' + file.native() + "\": this target is not a folder"},
  }};
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

namespace {

// The private mount ends with the shell, so the tree is kept elsewhere.
constexpr const char* onASmallVolume = R"(
mount -t tmpfs -o size=256k,mode=700 tmpfs "$1" 2>/dev/null || exit 99
volume=$1 kept=$2; shift 2
"$@"; status=$?
cp -a "$volume/." "$kept"
exit $status)";

Words privately(const Words& command) {
  Words words{"unshare", "--mount"};
  if (geteuid() != 0) words.emplace_back("--map-root-user");
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

}  // namespace

TEST(Cli, EndsInErrorWhenTheVolumeIsFull) {
  if (runProcess(privately({"true"})).status != 0) GTEST_SKIP() << "private mounts are not allowed here";
  const Folders folders;
  const Path kept = folders.root / "kept";
  fs::create_directory(folders.out);
  fs::create_directory(kept);
  for (std::size_t size = 50000; size < 50010; ++size) {
    writeDatedFile(folders.in / (std::to_string(size) + ".jpg"), std::string(size, 'x'));
  }
  auto command = privately({"sh", "-c", onASmallVolume, "sh", folders.out, kept});
  for (const auto& word :
       commandOf({"organise", folders.in, "--to", folders.out, "--folders=short", "--json"})) {
    command.push_back(word);
  }
  const auto result = runProcess(command, inUtc);
  if (result.status == 99) GTEST_SKIP() << "private mounts are not allowed here";
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, AllOf(HasSubstr(".jpg: No space left on device\n"),
                                EndsWith("kestrova-cli: Not enough space!\n")));
  const auto summary = QJsonDocument::fromJson(QByteArray::fromStdString(result.out)).object();
  EXPECT_EQ(summary[QLatin1String("result")].toString(), QStringLiteral("failed"));
  EXPECT_EQ(files(summary, "failed"), 1);
  const auto written = filesBelow(kept);
  EXPECT_THAT(written, Not(IsEmpty()));
  for (const auto& name : written) EXPECT_EQ(name, photoName(fs::file_size(kept / name)));
}

namespace {

constexpr std::size_t manyFiles = 600;

void writeManyFiles(const Path& folder) {
  for (std::size_t size = 1; size <= manyFiles; ++size) {
    writeDatedFile(folder / (std::to_string(size) + ".jpg"),
                   std::string(size, static_cast<char>('a' + size % 26)));
  }
}

void waitForFirstFile(Process& process, const Path& folder) {
  while (filesBelow(folder).empty() && process.isRunning()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void expectWholeFiles(const Path& folder) {
  for (const auto& name : filesBelow(folder)) {
    const std::string contents = readFile(folder / name);
    EXPECT_EQ(name, photoName(contents.size()));
    EXPECT_EQ(contents, std::string(contents.size(), static_cast<char>('a' + contents.size() % 26)));
  }
}

class CliStop : public testing::TestWithParam<int> {};

}  // namespace

TEST_P(CliStop, FinishesTheCurrentFileAndGoesOnWithTheNextRun) {
  const Folders folders;
  writeManyFiles(folders.in);
  Process process(commandOf({"organise", folders.in, "--to", folders.out, "--folders=short", "--json"}),
                  inUtc);
  waitForFirstFile(process, folders.out);
  for (int twice = 0; twice < 2; ++twice) process.send(GetParam());
  const auto result = process.wait();
  EXPECT_EQ(result.status, 130);
  const auto summary = QJsonDocument::fromJson(QByteArray::fromStdString(result.out)).object();
  EXPECT_EQ(summary[QLatin1String("status")].toString(), QStringLiteral("Stopped"));
  const auto written = filesBelow(folders.out).size();
  EXPECT_LT(written, manyFiles);
  EXPECT_EQ(static_cast<std::size_t>(totalFiles(summary, "written")), written);
  EXPECT_EQ(static_cast<std::size_t>(files(summary, "notReached")), manyFiles - written);
  expectWholeFiles(folders.out);

  EXPECT_EQ(folders.organise().status, 0);
  EXPECT_EQ(filesBelow(folders.out).size(), manyFiles);
  expectWholeFiles(folders.out);
}

INSTANTIATE_TEST_SUITE_P(Signals, CliStop, testing::Values(SIGINT, SIGTERM));

TEST(Cli, OutlivesAReaderThatWentAway) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  const Path status = folders.root / "status";
  auto command = Words{"sh", "-c", R"((sleep 0.1; shift; "$@"; echo $? > "$0") 2>&1 | true)", status, "-"};
  for (const auto& word : commandOf({"organise", folders.in, "--to", folders.out, "--log"}))
    command.push_back(word);
  runProcess(command, inUtc);
  EXPECT_EQ(readFile(status), "0\n");
  EXPECT_THAT(filesBelow(folders.out), testing::SizeIs(1));
}

namespace {

/// A terminal of 60 columns that keeps what is written to it.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    winsize size{};
    size.ws_col = 60;
    ioctl(master_, TIOCSWINSZ, &size);
  }
  ~Terminal() { close(master_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  std::string device() const { return ptsname(master_); }
  /// All that was written until the last program closed it.
  std::string read() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(master_, buffer.data(), buffer.size())) > 0;) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int master_;
};

}  // namespace

TEST(Cli, DrawsOneLineOnATerminal) {
  const Folders folders;
  writeDatedFile(folders.in / "a\x1b[2J.jpg", "1");
  const Terminal terminal;
  ProcessOptions options{.environment = {"TERM=xterm"}, .errorDevice = terminal.device()};
  Process process(commandOf({"organise", folders.in, "--to", folders.out}), options);
  const std::string drawn = terminal.read();
  EXPECT_EQ(process.wait().status, 0);
  EXPECT_THAT(drawn,
              AllOf(StartsWith("\r"), EndsWith("\r\x1b[K"), Not(HasSubstr("\n")), Not(HasSubstr("[2J"))));
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
