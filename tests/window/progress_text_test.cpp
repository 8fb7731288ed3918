#include "window/progress_text.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using Stage = RunProgress::Stage;

class ProgressText : public testing::Test {
 protected:
  ProgressText() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
  ~ProgressText() override { QLocale::setDefault(QLocale::system()); }
};

TEST_F(ProgressText, IsEmptyBeforeTheFirstRun) { EXPECT_EQ(progressText({}), QString()); }

TEST_F(ProgressText, CountsWhatIsFound) {
  EXPECT_EQ(progressText({Stage::scanning, 0}), QStringLiteral("0 files found"));
  EXPECT_EQ(progressText({Stage::scanning, 1}), QStringLiteral("1 file found"));
  EXPECT_EQ(progressText({Stage::planning, 5300}), QStringLiteral("5,300 files found"));
}

TEST_F(ProgressText, NamesWhatIsDoneOfWhatWasFound) {
  EXPECT_EQ(progressText({Stage::executing, 5300, 1240}), QStringLiteral("1,240 of 5,300 files"));
}

TEST_F(ProgressText, SaysWhenNothingWasFound) {
  EXPECT_EQ(progressText({Stage::executing, 0}), QStringLiteral("No photos or videos found"));
}

}  // namespace

}  // namespace kestrova
