#include "cli/cli_folders.h"

#include <array>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

// Runs that fill their volume, lose their reader or draw on a terminal.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// The private mount ends with the shell, so the tree is copied elsewhere.
constexpr int noMounts = 99;
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

/// A narrow terminal that keeps what is written to it.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    winsize size{};
    size.ws_col = columns;
    ioctl(master_, TIOCSWINSZ, &size);
  }
  ~Terminal() { close(master_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  std::string device() const { return ptsname(master_); }
  /// Everything that was written until the last program closed it.
  std::string read() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(master_, buffer.data(), buffer.size())) > 0;) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  static constexpr int columns = 60;
  int master_;
};

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
  const Words shell = privately({"sh", "-c", onASmallVolume, "sh", folders.out, kept});
  const auto result = runProcess(shell + commandOf(folders.organising({"--json"})), inUtc);
  if (result.status == noMounts) GTEST_SKIP() << "private mounts are not allowed here";
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, AllOf(HasSubstr(".jpg: No space left on device\n"),
                                EndsWith("kestrova-cli: Not enough space!\n")));
  const QJsonObject summary = jsonIn(result);
  EXPECT_EQ(summary[QLatin1String("result")].toString(), QStringLiteral("failed"));
  EXPECT_EQ(files(summary, "failed"), 1);
  const auto written = filesBelow(kept);
  EXPECT_THAT(written, Not(IsEmpty()));
  for (const auto& name : written) EXPECT_EQ(name, photoName(fs::file_size(kept / name)));
}

TEST(Cli, OutlivesAReaderThatWentAway) {
  const Folders folders;
  writeDatedFile(folders.in / "a.jpg", "1");
  const Path status = folders.root / "status";
  const Words shell{"sh", "-c", R"((sleep 0.1; shift; "$@"; echo $? > "$0") 2>&1 | true)", status, "-"};
  runProcess(shell + commandOf(folders.organising({"--log"})), inUtc);
  EXPECT_EQ(readFile(status), "0\n");
  EXPECT_THAT(filesBelow(folders.out), testing::SizeIs(1));
}

TEST(Cli, DrawsOneLineOnATerminal) {
  const Folders folders;
  writeDatedFile(folders.in / "a\x1b[2J.jpg", "1");
  const Terminal terminal;
  const ProcessOptions options{.environment = {"TERM=xterm"}, .errorDevice = terminal.device()};
  Process process(commandOf(folders.organising()), options);
  const std::string drawn = terminal.read();
  EXPECT_EQ(process.wait().status, 0);
  EXPECT_THAT(drawn,
              AllOf(StartsWith("\r"), EndsWith("\r\x1b[K"), Not(HasSubstr("\n")), Not(HasSubstr("[2J"))));
}

}  // namespace kestrova::test
