#include "platform/file_manager.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::filesBelow;
using test::readFile;
using test::TemporaryFolder;
using namespace std::chrono_literals;

constexpr int rounds = 100;
constexpr int fileCount = 12;

void makeSources(const Path& folder) {
  for (int i = 0; i < fileCount; ++i) {
    const auto size = static_cast<std::size_t>(i % 4 == 0 ? i : i * 40001);
    const Path path = test::writeFile(folder / std::to_string(i % 3) / (std::to_string(i) + ".jpg"),
                                      std::string(size, static_cast<char>('a' + i)));
    fs::permissions(path,
                    i % 2 == 0 ? fs::perms::owner_read : fs::perms::owner_read | fs::perms::owner_write);
  }
}

/// Does what a run does to the tree; an existing file counts as done. Returns the number of failures.
int copyTree(FileManager& files, const Path& from, const Path& to) {
  int failures = 0;
  for (int i = 0; i < fileCount; ++i) {
    const Path name = Path(std::to_string(i % 3)) / (std::to_string(i) + ".jpg");
    if (!files.createDirectory((to / name).parent_path())) ++failures;
    const auto copied = files.copyItem(from / name, to / name);
    if (!copied && copied.error().kind != FileError::Kind::alreadyExists) ++failures;
  }
  return failures;
}

void copyAndGetKilledAfter(std::chrono::nanoseconds time, FileManager& files, const Path& from,
                           const Path& to) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) ::_exit(copyTree(files, from, to));
  std::this_thread::sleep_for(time);
  ::kill(child, SIGKILL);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
}

void expectSame(const Path& one, const Path& other) {
  EXPECT_EQ(readFile(one), readFile(other)) << other;
  EXPECT_EQ(fs::last_write_time(one), fs::last_write_time(other)) << other;
  EXPECT_EQ(fs::status(one).permissions(), fs::status(other).permissions()) << other;
}

/// Files that a killed run left under a temporary name are hidden.
bool isHidden(const std::string& name) { return Path(name).filename().native().starts_with("."); }

class KilledRun : public testing::TestWithParam<Staging> {};

INSTANTIATE_TEST_SUITE_P(BothWays, KilledRun, testing::Values(Staging::unseen, Staging::underTemporaryName),
                         [](const auto& way) {
                           return way.param == Staging::unseen ? "Unseen" : "UnderATemporaryName";
                         });

}  // namespace

TEST_P(KilledRun, LeavesNoPartialFileAndIsCompletedByTheNext) {
  const TemporaryFolder source;
  makeSources(source.path());
  const auto files = systemFileManager(GetParam());
  const TemporaryFolder rehearsal;
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(copyTree(*files, source.path(), rehearsal.path()), 0);
  const auto wholeRun = std::chrono::steady_clock::now() - start;
  int incomplete = 0;
  std::size_t abandoned = 0;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    const TemporaryFolder target;
    copyAndGetKilledAfter(wholeRun * round / rounds, *files, source.path(), target.path());
    auto names = filesBelow(target.path());
    abandoned += std::erase_if(names, isHidden);
    for (const auto& name : names) expectSame(source / name, target / name);
    if (names.size() < fileCount) ++incomplete;
    EXPECT_EQ(copyTree(*files, source.path(), target.path()), 0);
    EXPECT_EQ(filesBelow(target.path()), filesBelow(source.path()));
    for (const auto& name : filesBelow(source.path())) expectSame(source / name, target / name);
  }
  EXPECT_GT(incomplete, 0) << "no run was killed in time";
  if (GetParam() == Staging::underTemporaryName) {
    EXPECT_GT(abandoned, 0U) << "nothing was there to clear away";
  }
}

}  // namespace kestrova
