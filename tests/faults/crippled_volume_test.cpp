#include "platform/file_manager.h"
#include "support/file_results.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

#include <cerrno>

#include <gmock/gmock.h>

#ifdef __linux__
#include <sys/syscall.h>
#endif

// File systems that support less than others, simulated by system calls that fail.

namespace kestrova {

#ifdef __linux__

namespace {

using test::codeOf;
using test::readFile;
using test::writeFile;

const Bytes data{'n', 'e', 'w'};

const std::vector<test::FailingCall> neitherLinksNorExclusiveRenames{{SYS_linkat, EPERM},
                                                                     {SYS_renameat2, EINVAL}};

}  // namespace

TEST(CrippledVolume, GetsEveryFileAndKeepsTheOldOnes) {
  const test::TemporaryFolder root;
  writeFile(root / "taken", "old");
  const auto files = systemFileManager(Staging::underTemporaryName);
  const bool isAllowed = test::withFailingCalls(neitherLinksNorExclusiveRenames, [&] {
    EXPECT_EQ(codeOf(files->writeData(data, root / "free")), 0);
    EXPECT_EQ(codeOf(files->writeData(data, root / "taken")), EEXIST);
  });
  if (!isAllowed) GTEST_SKIP() << "system calls cannot be made to fail here";
  EXPECT_EQ(readFile(root / "free"), "new");
  EXPECT_EQ(readFile(root / "taken"), "old");
  EXPECT_THAT(test::filesBelow(root.path()), testing::UnorderedElementsAre("free", "taken"));
}

TEST(CrippledVolume, DoesWithoutLocks) {
  const test::TemporaryFolder root;
  const auto files = systemFileManager(Staging::underTemporaryName);
  auto calls = neitherLinksNorExclusiveRenames;
  calls.push_back({SYS_flock, ENOLCK});
  if (!test::withFailingCalls(calls, [&] { EXPECT_EQ(codeOf(files->writeData(data, root / "free")), 0); }))
    GTEST_SKIP() << "system calls cannot be made to fail here";
  EXPECT_EQ(readFile(root / "free"), "new");
}

#endif

}  // namespace kestrova
