#include "platform/process_start.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace kestrova {

namespace {

/// Ends the process with the number that the next opened file gets, after these were closed.
[[noreturn]] void endWithNextDescriptor(std::initializer_list<int> closed) {
  const int usual = ::dup(STDIN_FILENO);
  ::close(usual);
  for (const int number : closed) ::close(number);
  prepareProcess();
  std::_Exit(::open("/", O_RDONLY) == usual ? 0 : 1);
}

}  // namespace

TEST(ProcessStartDeathTest, PutsTheNullDeviceWhereStandardDescriptorsAreMissing) {
  EXPECT_EXIT(endWithNextDescriptor({0, 1, 2}), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(endWithNextDescriptor({1}), testing::ExitedWithCode(0), "");
}

TEST(ProcessStartDeathTest, TakesNoDescriptorWhereNoneIsMissing) {
  EXPECT_EXIT(endWithNextDescriptor({}), testing::ExitedWithCode(0), "");
}

TEST(ProcessStartDeathTest, LetsTheProcessLiveOnWithFilesThatMayNotGrow) {
  const auto raiseAll = [] {
    prepareProcess();
    for (const int number : {SIGXFSZ, SIGPIPE}) std::raise(number);
    std::_Exit(0);
  };
  EXPECT_EXIT(raiseAll(), testing::ExitedWithCode(0), "");
}

}  // namespace kestrova
