#include "toolkit/PKStringAdditions.h"

#include <stdexcept>

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

TEST(StringAdditions, HaveTheNumbersOfThePlatformsOptions) {
  const auto found = [](unsigned options, QStringView text, QStringView other) {
    return containsString(text, other, CompareOptions::fromInt(options));
  };
  EXPECT_TRUE(found(1, u"Photo", u"PHOTO"));
  EXPECT_FALSE(found(2, u"Photo", u"PHOTO"));
  EXPECT_TRUE(found(2, u"Photo", u"hot"));
  EXPECT_FALSE(found(8, u"Photo", u"hoto"));
  EXPECT_TRUE(found(12, u"Photo", u"hoto"));
  EXPECT_FALSE(found(64, u"file 02", u"file 2"));
  EXPECT_TRUE(found(64, u"file 02", u"02"));
  EXPECT_TRUE(found(128, u"\u00DCn\u00FC", u"Unu"));
  EXPECT_TRUE(found(256, u"\uFF21\uFF22", u"AB"));
  EXPECT_TRUE(found(512, u"Photo", u"hot"));
  EXPECT_FALSE(found(512, u"Photo", u"HOT"));
  EXPECT_TRUE(found(1024, u"IMG_0012", u"[0-9]{4}$"));
}

TEST(StringAdditions, CountLettersWithoutTheirMarksWhenToldTo) {
  const auto found = [](QStringView text, QStringView other, CompareOptions more = {}) {
    return containsString(text, other, more | CompareOption::diacriticInsensitive);
  };
  EXPECT_TRUE(found(u"u\u0308ber", u"\u00FCber"));
  EXPECT_TRUE(found(u"uber", u"\u00FCber"));
  EXPECT_FALSE(found(u"Uber", u"\u00FCber"));
  EXPECT_TRUE(found(u"Uber", u"\u00FCber", CompareOption::caseInsensitive));
  EXPECT_FALSE(found(u"der \u00FCber", u"uber", CompareOption::anchored));
  EXPECT_TRUE(found(u"der \u00FCber", u"uber", CompareOption::anchored | CompareOption::backwards));
  EXPECT_FALSE(found(u"u\u0308", u"\u0308"));
  EXPECT_FALSE(containsString(u"\u00FCber", u"uber", CompareOption::widthInsensitive));
}

TEST(StringAdditions, CountWideAndNarrowLettersAsUsualOnesWhenToldTo) {
  const QStringView narrow = u"\uFF76\uFF9E";  // ka and a voiced sound mark
  const QStringView usual = u"\u30AC";         // ga
  EXPECT_TRUE(containsString(narrow, usual, CompareOption::widthInsensitive));
  EXPECT_TRUE(containsString(usual, narrow, CompareOption::widthInsensitive));
  EXPECT_FALSE(containsString(narrow, usual, {}));
  EXPECT_FALSE(containsString(u"\uFF21", u"A", CompareOption::diacriticInsensitive));
}

TEST(StringAdditions, FindWhatARegularExpressionMatches) {
  const auto found = [](QStringView text, QStringView pattern, CompareOptions more = {}) {
    return containsString(text, pattern, more | CompareOption::regularExpression);
  };
  EXPECT_TRUE(found(u"IMG_0012.JPG", u"\\d+\\.J"));
  EXPECT_FALSE(found(u"IMG_0012.JPG", u"\\.jpg"));
  EXPECT_TRUE(found(u"IMG_0012.JPG", u"\\.jpg", CompareOption::caseInsensitive));
  EXPECT_FALSE(found(u"IMG_0012.JPG", u"\\d", CompareOption::anchored));
  EXPECT_TRUE(found(u"IMG_0012.JPG", u"[A-Z]", CompareOption::anchored));
  EXPECT_TRUE(found(u"\u015Fehir", u"^\\w+$"));
  EXPECT_TRUE(found(u"abc", u"x*"));
  EXPECT_FALSE(found(u"abc(", u"("));
  EXPECT_FALSE(found(u"abc", u""));
}

TEST(StringAdditions, RefuseOptionsThatTheyDoNotKnow) {
  for (const unsigned unknown : {16U, 32U, 2048U, 0x80000000U, 1024U + 4, 1024U + 128, 1024U + 2}) {
    EXPECT_THROW(containsString(u"text", u"text", CompareOptions::fromInt(unknown)), std::invalid_argument)
        << unknown;
  }
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
