#include "platform/desktop_thread.h"

#include "support/gate.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <vector>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::Gate;

/// Long enough that only a fault lets it pass.
constexpr std::chrono::seconds patience(60);

/// Posts a call that waits at the gate, and destroys the thread meanwhile. Returns whether that came to an
/// end.
bool canLeave(const std::shared_ptr<Gate>& gate) {
  const auto left = std::async(std::launch::async, [gate] {
    DesktopThread desktop;
    desktop.post([gate] { gate->pass(); });
    while (!gate->isReached()) std::this_thread::yield();
  });
  const bool hasLeft = left.wait_for(patience) == std::future_status::ready;
  gate->open();
  return hasLeft;
}

/// Ends the process as main does, with another status where what comes after main is reached.
[[noreturn]] void end(int status) {
  std::atexit([] { std::_Exit(1); });
  std::exit(endOfMain(status));
}

}  // namespace

TEST(DesktopThread, MakesTheCallsInTheirOrderBeforeItEnds) {
  std::vector<int> made;
  {
    DesktopThread desktop;
    for (int i = 0; i < 5; ++i) desktop.post([&made, i] { made.push_back(i); });
  }
  EXPECT_THAT(made, testing::ElementsAre(0, 1, 2, 3, 4));
}

TEST(DesktopThread, LeavesACallThatDoesNotReturn) { EXPECT_TRUE(canLeave(std::make_shared<Gate>())); }

TEST(DesktopThread, MakesNoMoreCallsAfterOneThatCameBackTooLate) {
  const auto gate = std::make_shared<Gate>();
  const auto isMade = std::make_shared<std::atomic<bool>>(false);
  {
    DesktopThread desktop;
    desktop.post([gate] { gate->pass(); });
    desktop.post([isMade] { *isMade = true; });
    while (!gate->isReached()) std::this_thread::yield();
  }
  gate->open();
  while (isMade.use_count() > 1) std::this_thread::yield();
  EXPECT_FALSE(*isMade);
}

TEST(DesktopThreadDeathTest, EndsTheProcessBeforeItsCleanUpWhereACallIsUnderWay) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const auto gate = std::make_shared<Gate>();
        {
          DesktopThread desktop;
          desktop.post([gate] { gate->pass(); });
        }
        end(7);
      },
      testing::ExitedWithCode(7), "");
}

TEST(DesktopThreadDeathTest, LetsTheProcessEndAsUsualOtherwise) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        DesktopThread().post([] {});
        end(7);
      },
      testing::ExitedWithCode(1), "");
}

}  // namespace kestrova
