#include "cli/progress.h"
#include "support/error_output.h"

#include <gmock/gmock.h>

namespace kestrova::cli {

namespace {

using std::chrono::seconds;
using test::errorOutputOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::int64_t megabyte = 1024 * 1024;

Standing writing(std::int64_t done, std::int64_t found) {
  return {.phase = RunPhase::executing,
          .status = QStringLiteral("Copying"),
          .found = {.files = found, .bytes = found * megabyte},
          .settled = {.files = done, .bytes = done * megabyte}};
}

std::string line(const Standing& standing, std::optional<seconds> left = {}, int width = 200) {
  return progressLine(standing, left, width).toStdString();
}

}  // namespace

TEST(CliProgress, CountsWhatAScanFinds) {
  EXPECT_EQ(line({.phase = RunPhase::scanning,
                  .status = QStringLiteral("Analyzing source folders"),
                  .found = {.files = 12},
                  .duplicates = 3}),
            "12 found, 3 duplicates  Analyzing source folders");
}

TEST(CliProgress, SaysNothingOfDuplicatesWhereNoneAreCounted) {
  EXPECT_EQ(line({.phase = RunPhase::scanning, .status = QStringLiteral("Listing"), .found = {.files = 12}}),
            "12 found  Listing");
}

TEST(CliProgress, DrawsABarOfWhatIsDone) {
  EXPECT_EQ(line(writing(5, 20)), "[=====>              ]  25%  5 of 20  Copying");
  EXPECT_EQ(line(writing(20, 20)), "[====================] 100%  20 of 20  Copying");
}

TEST(CliProgress, NeverExceedsTheWidth) {
  for (const int width : {0, 1, 10, 40}) EXPECT_EQ(line(writing(5, 20), seconds(9), width).size(), width);
}

TEST(CliProgress, SaysTheTimeLeftInFittingUnits) {
  EXPECT_THAT(line(writing(1, 2), seconds(0)), HasSubstr("  1 s left  "));
  EXPECT_THAT(line(writing(1, 2), seconds(59)), HasSubstr("  59 s left  "));
  EXPECT_THAT(line(writing(1, 2), seconds(150)), HasSubstr("  3 min left  "));
  EXPECT_THAT(line(writing(1, 2), seconds(7290)), HasSubstr("  2 h 1 min left  "));
}

TEST(CliProgress, HasNothingToDoInAnEmptyRun) {
  EXPECT_THAT(line({.phase = RunPhase::executing}), HasSubstr("  0%  0 of 0"));
}

TEST(CliProgress, EscapesTheStatus) {
  EXPECT_THAT(line({.phase = RunPhase::scanning, .status = QStringLiteral("\x1b[2J")}),
              Not(HasSubstr("\x1b")));
}

TEST(CliProgress, AddsLinesWhereThereIsNoTerminal) {
  const std::string added = errorOutputOf([] {
    Progress progress(Progress::Mode::plain, {});
    progress.show(writing(5, 20));
  });
  EXPECT_EQ(added, line(writing(5, 20)) + '\n');
}

TEST(CliProgress, IsSilentThereWhenARunIsShort) {
  const std::string added = errorOutputOf([] {
    Progress progress(Progress::Mode::plain, std::chrono::hours(1));
    progress.show(writing(5, 20));
  });
  EXPECT_EQ(added, "");
}

TEST(CliProgress, DrawsOneLineOnATerminalAndTakesItAway) {
  const std::string drawn = errorOutputOf([] {
    Progress progress(Progress::Mode::terminal);
    progress.show(writing(5, 20));
    progress.show(writing(6, 20));
  });
  EXPECT_THAT(drawn, HasSubstr("\r[=====>"));
  EXPECT_THAT(drawn, testing::EndsWith("\r\x1b[K"));
  EXPECT_THAT(drawn, Not(HasSubstr("\n")));
}

}  // namespace kestrova::cli
