#include "model/size_text.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

constexpr std::string_view jpg = "jpg";
constexpr std::string_view mov = "mov";
constexpr std::string_view txt = "txt";

class Statistics : public testing::Test {
 protected:
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }
  test::HeadlessProgram program;
};

}  // namespace

TEST(SizeText, ShowsMegabytesOfTwoToTheTwentyBytesWithTwoDecimals) {
  EXPECT_EQ(sizeText(1048576), QStringLiteral("1.00 MB"));
  EXPECT_EQ(sizeText(0), QStringLiteral("0.00 MB"));
  EXPECT_EQ(sizeText(1572864), QStringLiteral("1.50 MB"));
}

TEST(SizeText, LosesTheLastDecimalsOfVeryLargeTotals) {
  // 123456789012345 bytes as a float are 123456788103168 bytes.
  EXPECT_EQ(sizeText(123456789012345), QStringLiteral("117737568.00 MB"));
}

TEST(SizeText, ShowsCountsInPlainDigits) { EXPECT_EQ(countText(1234567), QStringLiteral("1234567")); }

TEST_F(Statistics, CountSourcePhotosAndVideosWithTheirTotals) {
  manager().increaseSourceCount(jpg, 1048576);
  manager().increaseSourceCount(jpg, 1048576);
  manager().increaseSourceCount(mov, 2097152);
  program.settle();
  EXPECT_EQ(controls().lblPhotoCount->stringValue(), QStringLiteral("2"));
  EXPECT_EQ(controls().lblPhotoSize->stringValue(), QStringLiteral("2.00 MB"));
  EXPECT_EQ(controls().lblVideoCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().lblVideoSize->stringValue(), QStringLiteral("2.00 MB"));
  EXPECT_EQ(controls().lblTotalCount->stringValue(), QStringLiteral("3"));
  EXPECT_EQ(controls().lblTotalSize->stringValue(), QStringLiteral("4.00 MB"));
}

TEST_F(Statistics, RefreshTheSourceLabelsForAFileOfNeitherKind) {
  controls().lblPhotoCount->setStringValue(QStringLiteral("stale"));
  manager().increaseSourceCount(txt, 5);
  program.settle();
  EXPECT_EQ(controls().lblPhotoCount->stringValue(), QStringLiteral("0"));
  EXPECT_EQ(manager().sTotalCount, 0);
}

TEST_F(Statistics, CountAFileOfBothKindsTwice) {
  manager().extensionImages = QStringLiteral("(,mov,)");
  manager().increaseSourceCount(mov, 10);
  manager().increaseTargetCount(mov, 10);
  EXPECT_EQ(manager().sPhotoCount, 1);
  EXPECT_EQ(manager().sVideoCount, 1);
  EXPECT_EQ(manager().sTotalCount, 2);
  EXPECT_EQ(manager().sTotalSize, 20);
  EXPECT_EQ(manager().tTotalCount, 2);
  program.settle();
  EXPECT_EQ(controls().trgPhotoCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().trgVideoCount->stringValue(), QStringLiteral("1"));
}

TEST_F(Statistics, CountDuplicatesApart) {
  manager().increaseSourceDuplicate(jpg, 524288);
  program.settle();
  EXPECT_EQ(controls().lblDuplicateCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().lblDuplicateSize->stringValue(), QStringLiteral("0.50 MB"));
  EXPECT_EQ(manager().sTotalCount, 0);
}

TEST_F(Statistics, AddUpToTheProgressOfARun) {
  manager().increaseTargetCount(jpg, 1048576);
  manager().increaseRotateCount(jpg, 1048576);
  manager().increaseTargetAlready(jpg, 1048576);
  manager().increaseTargetAlready(mov, 1048576);
  manager().increaseFilteredPhoto(jpg, 1048576);
  program.settle();
  EXPECT_EQ(controls().processBar->doubleValue(), 5);
  EXPECT_EQ(controls().trgTotalCount->stringValue(), QStringLiteral("2"));
  EXPECT_EQ(controls().trgTotalSize->stringValue(), QStringLiteral("2.00 MB"));
  EXPECT_EQ(controls().trgPhotoCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().trgPhotoSize->stringValue(), QStringLiteral("1.00 MB"));
  EXPECT_EQ(controls().trgRotatedCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().trgRotatedSize->stringValue(), QStringLiteral("1.00 MB"));
  EXPECT_EQ(controls().trgExistCount->stringValue(), QStringLiteral("2"));
  EXPECT_EQ(controls().trgExistSize->stringValue(), QStringLiteral("2.00 MB"));
  EXPECT_EQ(controls().trgFilteredCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().trgFilteredSize->stringValue(), QStringLiteral("1.00 MB"));
  EXPECT_EQ(controls().trgVideoCount->stringValue(), QString());
}

TEST_F(Statistics, ShowTargetVideosInTheirOwnLabels) {
  manager().increaseTargetCount(mov, 3145728);
  program.settle();
  EXPECT_EQ(controls().trgVideoCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(controls().trgVideoSize->stringValue(), QStringLiteral("3.00 MB"));
  EXPECT_EQ(controls().trgPhotoCount->stringValue(), QString());
}

TEST_F(Statistics, OfACopyThatIsNeitherKindRefreshOnlyTheTotals) {
  manager().increaseTargetCount(txt, 7);
  program.settle();
  EXPECT_EQ(controls().trgTotalCount->stringValue(), QStringLiteral("0"));
  EXPECT_EQ(controls().trgPhotoCount->stringValue(), QString());
}

TEST_F(Statistics, ShowTheNewestValuesWithFewRefreshes) {
  int refreshes = 0;
  controls().lblTotalSize->didChange = [&] { ++refreshes; };
  for (int i = 0; i < 1000; ++i) manager().increaseSourceCount(jpg, 1);
  program.settle();
  EXPECT_EQ(controls().lblPhotoCount->stringValue(), QStringLiteral("1000"));
  EXPECT_EQ(refreshes, 1);
}

TEST_F(Statistics, CanBeShownByATimerToo) {
  manager().sPhotoCount = 3;
  manager().showSourceLabelsTimer();
  program.settle();
  EXPECT_EQ(controls().lblPhotoCount->stringValue(), QStringLiteral("3"));
  EXPECT_TRUE(program.log.holds(QStringLiteral("Timer")));
}

TEST_F(Statistics, PostedBeforeTheControllerGoesAreDropped) {
  manager().increaseSourceCount(jpg, 1);
  program.interface.reset();
  EXPECT_NO_THROW(program.settle());
}

}  // namespace kestrova
