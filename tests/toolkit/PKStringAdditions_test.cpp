#include "toolkit/PKStringAdditions.h"

#include <gtest/gtest.h>

namespace kestrova {

using namespace PKStringAdditions;

TEST(StringAdditions, NeverFindAnEmptyString) {
  EXPECT_FALSE(containsString(u"text", u""));
  EXPECT_FALSE(containsString(u"", u""));
  EXPECT_FALSE(containsString(u"text", u"", CompareOption::anchored));
}

TEST(StringAdditions, FindAnExtensionBetweenItsCommas) {
  EXPECT_TRUE(containsString(u"(,jpg,jpeg,)", u",jpg,"));
  EXPECT_TRUE(containsString(u"(,jpg,jpeg,)", u",jpeg,"));
  EXPECT_FALSE(containsString(u"(,jpg,jpeg,)", u",jpe,"));
}

TEST(StringAdditions, TellCapitalsFromSmallLettersUnlessToldNotTo) {
  EXPECT_FALSE(containsString(u"(,jpg,jpeg,)", u",JPG,"));
  EXPECT_TRUE(containsString(u"(,jpg,jpeg,)", u",JPG,", CompareOption::caseInsensitive));
}

TEST(StringAdditions, TellComposedFromDecomposedLetters) {
  EXPECT_FALSE(containsString(u"\u00FC", u"u\u0308"));
  EXPECT_FALSE(containsString(u"u\u0308", u"\u00FC"));
}

TEST(StringAdditions, FindAnAnchoredStringAtTheStartOnlyOrBackwardsAtTheEndOnly) {
  const CompareOptions atEnd = CompareOption::anchored | CompareOption::backwards;
  EXPECT_TRUE(containsString(u"photo.jpg", u"photo", CompareOption::anchored));
  EXPECT_FALSE(containsString(u"photo.jpg", u"jpg", CompareOption::anchored));
  EXPECT_TRUE(containsString(u"photo.jpg", u"jpg", atEnd));
  EXPECT_FALSE(containsString(u"photo.jpg", u"photo", atEnd));
  EXPECT_TRUE(containsString(u"photo.jpg", u"to.j", CompareOption::backwards));
}

TEST(ConvertTurkish, RepairsUtf8ThatWasReadAsWindows1252) {
  EXPECT_EQ(convertTurkish(QStringLiteral("\u00C4\u00B0stanbul")), QStringLiteral("\u0130stanbul"));
  EXPECT_EQ(convertTurkish(QStringLiteral("\u00C5\u0178ehir")), QStringLiteral("\u015Fehir"));
}

TEST(ConvertTurkish, TurnsMisreadQuotesIntoAnApostrophe) {
  EXPECT_EQ(convertTurkish(QStringLiteral("a\u00E2\u20AC\u2122b")), QStringLiteral("a'b"));
  EXPECT_EQ(convertTurkish(QStringLiteral("a\u00E2\u20AC\u02DCb")), QStringLiteral("a'b"));
}

TEST(ConvertTurkish, TurnsEveryYWithAcuteIntoADotlessI) {
  EXPECT_EQ(convertTurkish(QStringLiteral("\u00FDl\u00FDk dobr\u00FD")),
            QStringLiteral("\u0131l\u0131k dobr\u0131"));
}

TEST(ConvertTurkish, RepairsEachLetterOfTheTurkishCodePage) {
  EXPECT_EQ(convertTurkish(QStringLiteral("\u00FD\u00DD\u00F0\u00D0\u00FE\u00DE")),
            QStringLiteral("\u0131\u0130\u011F\u011E\u015F\u015E"));
}

TEST(ConvertTurkish, RepairsEachMisreadPairOfBytes) {
  EXPECT_EQ(
      convertTurkish(QStringLiteral(
          "\u00C4\u00B1 \u00C3\u00A7 \u00C5\u0178 \u00C4\u00B0 \u00C3\u00BC \u00C3\u2021 \u00C4\u0178 "
          "\u00C3\u0153 \u00C5\uFFFD \u00C3\u00B6 \u00C3\u2013 \u00C5\u009E")),
      QStringLiteral("\u0131 \u00E7 \u015F \u0130 \u00FC \u00C7 \u011F \u00DC \u015E \u00F6 \u00D6 \u015E"));
}

TEST(ConvertTurkish, NeverYieldsACapitalGWithBreveFromUtf8) {
  EXPECT_EQ(convertTurkish(QStringLiteral("\u00C4\u0178\u00C4\u0178")), QStringLiteral("\u011F\u011F"));
  EXPECT_EQ(convertTurkish(QStringLiteral("\u00C4\u017E")), QStringLiteral("\u00C4\u017E"));
}

TEST(ConvertTurkish, LeavesDecomposedLettersAndOtherTextAlone) {
  EXPECT_EQ(convertTurkish(QStringLiteral("y\u0301 plain \u011E")), QStringLiteral("y\u0301 plain \u011E"));
  EXPECT_EQ(convertTurkish(QString()), QString());
}

TEST(OnlyLetterVersion, KeepsLettersAndDigits) {
  EXPECT_EQ(getOnlyLetterVersion(u"IMG_0012 (copy).JPG"), QStringLiteral("IMG0012copyJPG"));
  EXPECT_EQ(getOnlyLetterVersion(u"\u00C7al\u0131\u015Fma-2014"),
            QStringLiteral("\u00C7al\u0131\u015Fma2014"));
}

TEST(OnlyLetterVersion, KeepsMarksAndNumbersOfEveryScript) {
  EXPECT_EQ(getOnlyLetterVersion(u"u\u0308-\u0663 \u2167+\u00BD"),
            QStringLiteral("u\u0308\u0663\u2167\u00BD"));
}

TEST(OnlyLetterVersion, KeepsLettersBeyondTheBasicPlaneAndDropsSymbolsThere) {
  EXPECT_EQ(getOnlyLetterVersion(u"\U00020000\U0001F600\U0001D7D8"), QStringLiteral("\U00020000\U0001D7D8"));
}

TEST(OnlyLetterVersion, DropsHalvesOfSurrogatePairs) {
  const QString halves = QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b") + QChar(0xDE00);
  EXPECT_EQ(getOnlyLetterVersion(halves), QStringLiteral("ab"));
}

}  // namespace kestrova
