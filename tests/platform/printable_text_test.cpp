#include "platform/printable_text.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

std::string shown(std::string_view bytes) { return printableText(bytes).toStdString(); }

}  // namespace

TEST(PrintableText, LeavesLettersOfAllScriptsAlone) {
  const std::string text = "Urlaub in Köln, 夏, \xf0\x9f\x93\xb7.jpg";
  EXPECT_EQ(shown(text), text);
}

TEST(PrintableText, EscapesControlCharacters) {
  EXPECT_EQ(shown("a\nb\x1b[31m\r\t\x7f"), "a\\nb\\x1b[31m\\x0d\\x09\\x7f");
  EXPECT_EQ(shown("\xc2\x9b"
                  "2J"),
            "\\x9b2J");
}

TEST(PrintableText, EscapesWhatTurnsTheDirectionOfTheLine) {
  EXPECT_EQ(shown("a\xe2\x80\xaegpj.exe"), "a\\u{202e}gpj.exe");
  EXPECT_EQ(shown("a\xe2\x80\xa8z"), "a\\u{2028}z");
}

TEST(PrintableText, ShowsBytesThatAreNotUtf8) {
  EXPECT_EQ(shown("a\xff\xc3"), "a\\xff\\xc3");
  EXPECT_EQ(shown("\xed\xa0\x80"), "\\xed\\xa0\\x80");
}

TEST(PrintableText, ShowsALoneSurrogate) {
  EXPECT_EQ(printableText(QString(QChar(0xd800))), QString(QChar(QChar::ReplacementCharacter)));
}

}  // namespace kestrova
