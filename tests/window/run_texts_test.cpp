#include "window/run_texts.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

constexpr RunState idle;
constexpr RunState scanning{.phase = RunPhase::scanning};
constexpr RunState planning{.phase = RunPhase::planning};
constexpr RunState executing{.phase = RunPhase::executing};
constexpr RunState paused{.phase = RunPhase::executing, .isPaused = true};

RunState ended(RunEnd end) { return {.phase = RunPhase::ended, .end = end}; }

class ProgressText : public testing::Test {
 protected:
  ProgressText() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
  ~ProgressText() override { QLocale::setDefault(QLocale::system()); }
};

TEST_F(ProgressText, IsEmptyBeforeTheFirstRun) { EXPECT_EQ(progressText({.run = idle}), QString()); }

TEST_F(ProgressText, CountsWhatIsFound) {
  EXPECT_EQ(progressText({.run = scanning, .found = 0}), QStringLiteral("0 files found"));
  EXPECT_EQ(progressText({.run = scanning, .found = 1}), QStringLiteral("1 file found"));
  EXPECT_EQ(progressText({.run = planning, .found = 5300}), QStringLiteral("5,300 files found"));
}

TEST_F(ProgressText, NamesWhatIsDoneOfWhatWasFound) {
  EXPECT_EQ(progressText({.run = executing, .found = 5300, .done = 1240}),
            QStringLiteral("1,240 of 5,300 files"));
}

TEST_F(ProgressText, StaysWhenTheRunHasEnded) {
  for (const auto end : {RunEnd::completed, RunEnd::stopped, RunEnd::outOfSpace, RunEnd::error})
    EXPECT_EQ(progressText({.run = ended(end), .found = 12, .done = 7}), QStringLiteral("7 of 12 files"));
}

TEST_F(ProgressText, CountsOneFileInTheSingular) {
  EXPECT_EQ(progressText({.run = executing, .found = 1, .done = 0}), QStringLiteral("0 of 1 file"));
}

TEST_F(ProgressText, SaysWhenNothingWasFound) {
  EXPECT_EQ(progressText({.run = ended(RunEnd::nothingFound)}), QStringLiteral("No photos or videos found"));
}

TEST_F(ProgressText, StandsInTheTitleInShort) {
  EXPECT_EQ(titleText({.run = idle}), QStringLiteral("Kestrova"));
  EXPECT_EQ(titleText({.run = scanning}), QStringLiteral("Searching - Kestrova"));
  EXPECT_EQ(titleText({.run = executing, .found = 1000, .done = 429}), QStringLiteral("42% - Kestrova"));
  EXPECT_EQ(titleText({.run = paused, .found = 1000, .done = 429}),
            QStringLiteral("42% (paused) - Kestrova"));
  EXPECT_EQ(titleText({.run = ended(RunEnd::completed), .found = 10, .done = 10}),
            QStringLiteral("Kestrova"));
}

TEST_F(ProgressText, SaysTheTimeLeftAsOneSaysIt) {
  using std::chrono::seconds;
  EXPECT_EQ(timeLeftText(seconds(0)), QStringLiteral("A few seconds left"));
  EXPECT_EQ(timeLeftText(seconds(40)), QStringLiteral("Less than a minute left"));
  EXPECT_EQ(timeLeftText(seconds(65)), QStringLiteral("About 1 minute left"));
  EXPECT_EQ(timeLeftText(seconds(299)), QStringLiteral("About 5 minutes left"));
  EXPECT_EQ(timeLeftText(seconds(2 * 3600)), QStringLiteral("About 2 hours left"));
}

TEST_F(ProgressText, SaysInPlainWordsWhatARunLeaves) {
  EXPECT_EQ(remainderText({}), QString());
  EXPECT_EQ(remainderText({.failed = 1}), QStringLiteral("1 file could not be written."));
  EXPECT_EQ(remainderText({.nameTaken = 3, .alreadyThere = 1200}),
            QStringLiteral("3 files were left out, as other files have their names. 1,200 files were in the "
                           "target already."));
  EXPECT_TRUE(remainderText({.foundNothing = true}).contains(QStringLiteral("open it again")));
  EXPECT_FALSE(RunRemainder{.alreadyThere = 5}.isSerious());
  EXPECT_TRUE(RunRemainder{.failed = 1}.isSerious());
}

TEST_F(ProgressText, CountsWhatIsWritten) {
  EXPECT_EQ(writtenText(1), QStringLiteral("1 file written."));
  EXPECT_EQ(writtenText(5300), QStringLiteral("5,300 files written."));
}

}  // namespace

}  // namespace kestrova
