#include "platform/exclusive_rename.h"

#include "platform/file_error.h"
#include "platform/long_path.h"
#include "support/file_results.h"
#include "support/temporary_folder.h"

#include <atomic>
#include <cerrno>
#include <new>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::codeOf;
using test::readFile;
using test::TemporaryFolder;
using test::writeFile;

constexpr int rounds = 1500;
constexpr int processes = 2;

/// Lets several processes begin each round at the same time, and counts what they did in it.
struct Arena {
  std::atomic<int> arrived[rounds];
  std::atomic<int> renamed[rounds];
  std::atomic<int> refused[rounds];
};

/// Memory that stays shared with child processes.
Arena* sharedArena() {
  void* const memory =
      ::mmap(nullptr, sizeof(Arena), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return memory == MAP_FAILED ? nullptr : new (memory) Arena();
}

void renameInEveryRound(Arena& arena, int folder, const std::string& own) {
  for (int round = 0; round < rounds; ++round) {
    const std::string from = own + std::to_string(round);
    const std::string to = "to" + std::to_string(round);
    ++arena.arrived[round];
    while (arena.arrived[round] < processes) std::this_thread::yield();
    const int code = codeOf(renameWhereFree({folder, from.c_str()}, {folder, to.c_str()}));
    if (code == 0) ++arena.renamed[round];
    if (code == EEXIST) ++arena.refused[round];
  }
}

}  // namespace

TEST(ExclusiveRename, RenamesAndRefusesTakenNamesInEachOfItsWays) {
  const TemporaryFolder root;
  const FileDescriptor folder = openPlace(root.path()).value();
  writeFile(root / "taken", "old");
  fs::create_symlink("nowhere", root / "link");
  for (const auto rename : {renameWithoutReplacing, linkThenUnlink, renameWhereFree}) {
    writeFile(root / "from", "new");
    const auto named = [&](const char* name) { return NameInFolder{folder.get(), name}; };
    EXPECT_EQ(codeOf(rename(named("from"), named("taken"))), EEXIST);
    EXPECT_EQ(codeOf(rename(named("from"), named("link"))), EEXIST);
    EXPECT_EQ(codeOf(rename(named("from"), named("to"))), 0);
    EXPECT_EQ(readFile(root / "taken"), "old");
    EXPECT_EQ(readFile(root / "to"), "new");
    EXPECT_FALSE(fs::exists(root / "from"));
    fs::remove(root / "to");
  }
}

TEST(ExclusiveRename, GivesANameToOneOfTwoProcessesWhateverTheFileSystemKnows) {
  const TemporaryFolder root;
  const FileDescriptor folder = openPlace(root.path()).value();
  Arena* const arena = sharedArena();
  ASSERT_NE(arena, nullptr);
  for (int round = 0; round < rounds; ++round) {
    for (const char* own : {"a", "b"}) writeFile(root / (own + std::to_string(round)), own);
  }
  const pid_t child = ::fork();
  renameInEveryRound(*arena, folder.get(), child == 0 ? "a" : "b");
  if (child == 0) ::_exit(0);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  int lost = 0;
  for (int round = 0; round < rounds; ++round) {
    if (arena->renamed[round] != 1 || arena->refused[round] != processes - 1) ++lost;
  }
  EXPECT_EQ(lost, 0);
  EXPECT_EQ(test::filesBelow(root.path()).size(), std::size_t{rounds} * processes);
  ::munmap(arena, sizeof(Arena));
}

}  // namespace kestrova
