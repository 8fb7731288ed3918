#include "support/headless_program.h"

#include <thread>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

class ShownStatus : public testing::Test {
 protected:
  test::HeadlessProgram program;
};

QString millisecondsAt(std::chrono::microseconds sinceEpoch) {
  test::HeadlessProgram program;
  const auto whole = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
  const std::chrono::nanoseconds rest = sinceEpoch - whole;
  program.clock = [&] { return Date{whole.count(), static_cast<std::int32_t>(rest.count())}; };
  return program.manager().getMilliseconds();
}

}  // namespace

TEST_F(ShownStatus, ShowsATextWithTheMainThreadsNextTurn) {
  program.manager().setStatus(QStringLiteral("text"));
  EXPECT_EQ(program.status(), QString());
  program.settle();
  EXPECT_EQ(program.status(), QStringLiteral("text"));
}

TEST_F(ShownStatus, ShowsTheTextThatWasPostedLast) {
  std::thread([this] {
    program.manager().setStatus(QStringLiteral("first"));
    program.manager().setStatus(QStringLiteral("second"));
  }).join();
  program.settle();
  EXPECT_EQ(program.statusTexts(), QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

TEST_F(ShownStatus, IsClearedByAnEmptyText) {
  program.manager().setStatus(QStringLiteral("text"));
  program.manager().setStatus(QString());
  program.settle();
  EXPECT_EQ(program.status(), QString());
}

TEST_F(ShownStatus, IsNotChangedByAnAbsentLabel) {
  program.interface->lblStatus.reset();
  program.manager().setStatus(QStringLiteral("nobody sees this"));
  EXPECT_NO_THROW(test::HeadlessProgram::settle());
  EXPECT_TRUE(program.manager().lblStatus.isAbsent());
  program.interface->lblStatus = std::make_shared<TextField>();
}

TEST(Clock, CountsMillisecondsSince1970) {
  EXPECT_EQ(millisecondsAt(1500ms), QStringLiteral("1500"));
  EXPECT_EQ(millisecondsAt(0ms), QStringLiteral("0"));
  EXPECT_EQ(millisecondsAt(1400630400s), QStringLiteral("1400630400000"));
}

TEST(Clock, LeavesOutWhatIsLessThanAMillisecond) {
  EXPECT_EQ(millisecondsAt(1999900us), QStringLiteral("1999"));
  EXPECT_EQ(millisecondsAt(-1999900us), QStringLiteral("-1999"));
}

}  // namespace kestrova
