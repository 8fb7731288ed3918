#include "support/process.h"
#include "support/small_volume.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/mount.h>
#endif

// Runs of the real program in surroundings that are not what they should be.

namespace kestrova::test {

namespace {

/// A socket that takes connections and never answers.
class SilentSocket {
 public:
  explicit SilentSocket(const Path& path) : number_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(number_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(number_, 8), 0);
  }
  ~SilentSocket() { ::close(number_); }
  SilentSocket(const SilentSocket&) = delete;
  SilentSocket& operator=(const SilentSocket&) = delete;

 private:
  int number_;
};

/// A folder "in" with one file, and the command line that organises it into "out".
struct Album {
  TemporaryFolder root;
  Path out = root / "out";
  std::vector<std::string> command{KESTROVA_CLI, "organise", root / "in", "--to", out};

  explicit Album(std::size_t size = 100'000) { writeFile(root / "in/a.jpg", std::string(size, 'a')); }

  /// What the program leaves behind when a shell does something first.
  ProcessResult runAfter(const std::string& script) const {
    std::vector<std::string> words{"/bin/sh", "-c", script + "; exec \"$0\" \"$@\""};
    words.insert(words.end(), command.begin(), command.end());
    return runProcess(words, {.environment = {"LC_ALL=C"}, .currentFolder = root.path()});
  }
};

std::string usageError(const std::string& reason) {
  return "kestrova-cli: " + reason + "\nTry \"kestrova-cli --help\" for help.\n";
}

/// Waits so long that only a fault lets the time pass.
bool endsByItself(Process& process) {
  for (int i = 0; i < 600 && process.isRunning(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  return !process.isRunning();
}

}  // namespace

TEST(CliHostFaults, ASessionBusThatNeverAnswersDelaysNothing) {
  const Album album;
  const SilentSocket bus(album.root / "bus");
  const std::string address = "DBUS_SESSION_BUS_ADDRESS=unix:path=" + (album.root / "bus").native();
  Process program(album.command, {.environment = {address}});
  ASSERT_TRUE(endsByItself(program));
  const ProcessResult result = program.wait();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("\nCompleted ("));
  EXPECT_EQ(filesBelow(album.out).size(), 1U);
}

TEST(CliHostFaults, ALimitOnTheSizeOfFilesIsAnErrorOfTheFile) {
  const Album album;
  const ProcessResult result = album.runAfter("ulimit -f 8");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, testing::HasSubstr("not written: " + (album.root / "in/a.jpg").native() +
                                             ": File too large\n"));
  EXPECT_THAT(filesBelow(album.out), testing::IsEmpty());
}

TEST(CliHostFaults, ARunWithoutStandardDescriptorsIsAsAnyOther) {
  Album album;
  album.command.emplace_back("--log");
  const ProcessResult result = album.runAfter("exec <&- >&- 2>&-");
  EXPECT_EQ(result.status, 0);
  ASSERT_EQ(filesBelow(album.out).size(), 1U);
  EXPECT_EQ(readFile(album.out / filesBelow(album.out).front()), readFile(album.root / "in/a.jpg"));
}

TEST(CliHostFaults, ARelativeFolderIsRefusedWhereTheCurrentOneIsGone) {
  Album album;
  const std::string intoNothing = "mkdir gone; cd gone; rmdir ../gone";
  album.command = {KESTROVA_CLI, "organise", "in", "--to", album.out};
  const ProcessResult relative = album.runAfter(intoNothing);
  EXPECT_EQ(relative.status, 2);
  EXPECT_EQ(relative.err, usageError("\"in\": the current folder is gone"));
  album.command = {KESTROVA_CLI, "organise", album.root / "in", "--to", album.out};
  EXPECT_EQ(album.runAfter(intoNothing).status, 0);
}

#ifdef __linux__

TEST(CliHostFaults, ATargetThatIsReadOnlyIsToldBeforeTheScan) {
  Album album;
  const bool isAllowed = withSmallVolume(65536, [&](const Path& volume) {
    ASSERT_EQ(::mount("none", volume.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    album.command[4] = volume / "new";
    const ProcessResult result = runProcess(album.command, {.environment = {"LC_ALL=C"}});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, usageError('"' + (volume / "new").native() + "\": Read-only file system"));
    EXPECT_EQ(result.out, "");
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

TEST(CliHostFaults, AVolumeThatTakesNoMoreFilesSaysSo) {
  Album album(1000);
  const bool isAllowed = withSmallVolume(1'000'000, [&](const Path& volume) {
    ASSERT_EQ(::mount("none", volume.c_str(), "tmpfs", MS_REMOUNT, "nr_inodes=2"), 0);
    album.command[4] = volume;
    const ProcessResult result = runProcess(album.command, {.environment = {"LC_ALL=C"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, testing::HasSubstr("in/a.jpg: the volume holds as many files as it can\n"));
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

#endif

}  // namespace kestrova::test
