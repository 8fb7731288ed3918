#include "platform/file_manager.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#ifdef __linux__
#include <sys/syscall.h>
#endif

namespace kestrova {

#ifdef __linux__

namespace {

using test::readFile;

const Bytes data{'n', 'e', 'w'};

std::vector<int> callsThatSignalsInterrupt() {
  return {SYS_openat,    SYS_openat2,  SYS_mkdirat, SYS_linkat,
#ifdef SYS_renameat
          SYS_renameat,
#endif
          SYS_renameat2, SYS_fdatasync};
}

class InterruptedCalls : public testing::TestWithParam<Staging> {};

INSTANTIATE_TEST_SUITE_P(BothWays, InterruptedCalls,
                         testing::Values(Staging::unseen, Staging::underTemporaryName), [](const auto& way) {
                           return way.param == Staging::unseen ? "Unseen" : "UnderATemporaryName";
                         });

}  // namespace

TEST_P(InterruptedCalls, AreRepeatedUntilTheFilesAreThere) {
  const test::TemporaryFolder root;
  const Path from = test::writeFile(root / "from", "source");
  const Path replaced = test::writeFile(root / "replaced", "old");
  const auto files = systemFileManager(GetParam());
  const int interrupted = test::withInterruptedCalls(callsThatSignalsInterrupt(), [&] {
    EXPECT_TRUE(files->createDirectory(root / "a/b"));
    EXPECT_TRUE(files->copyItem(from, root / "a/b/copy"));
    EXPECT_TRUE(files->writeData(data, root / "a/b/written"));
    EXPECT_TRUE(files->writeDataReplacing(data, replaced));
    const auto held = files->holdTarget(root / "held");
    EXPECT_TRUE(files->createDirectory(root / "held/c/d"));
    EXPECT_TRUE(files->copyItem(from, root / "held/c/d/copy"));
  });
  if (interrupted < 0) GTEST_SKIP() << "system calls cannot be interrupted here";
  constexpr int nearlyEveryCall = 10;  // at least one of each routine above
  EXPECT_GT(interrupted, nearlyEveryCall);
  EXPECT_EQ(readFile(root / "a/b/copy"), "source");
  EXPECT_EQ(readFile(root / "a/b/written"), "new");
  EXPECT_EQ(readFile(replaced), "new");
  EXPECT_EQ(readFile(root / "held/c/d/copy"), "source");
}

#endif

}  // namespace kestrova
