#include "app/status_line.h"

#include <QStringList>
#include <deque>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

class StatusTexts : public testing::Test {
 protected:
  void showForFile(const char* text) {
    line.showForFile([text] { return QString::fromLatin1(text); });
  }
  void show(const char* text) { line.show(QString::fromLatin1(text)); }
  /// What the main thread's next turn displays.
  std::string turn() {
    displayed.clear();
    for (; !posted.empty(); posted.pop_front()) posted.front()();
    return displayed.join(u',').toStdString();
  }

  std::deque<StatusLine::Block> posted;
  QStringList displayed;
  StatusLine line{[this](StatusLine::Block block) { posted.push_back(std::move(block)); },
                  [this](const QString& text) { displayed << text; }};
};

}  // namespace

TEST_F(StatusTexts, AllAppearInTheirOrder) {
  show("a");
  show("b");
  EXPECT_EQ(turn(), "a,b");
}

TEST_F(StatusTexts, OfManyFilesAppearOnceWithTheLast) {
  for (const char* text : {"1", "2", "3"}) showForFile(text);
  EXPECT_EQ(posted.size(), 1U);
  EXPECT_EQ(turn(), "3");
}

TEST_F(StatusTexts, OfAFileAppearAgainAfterTheMainThreadsTurn) {
  showForFile("1");
  EXPECT_EQ(turn(), "1");
  showForFile("2");
  EXPECT_EQ(turn(), "2");
}

TEST_F(StatusTexts, OfFilesDoNotOvertakeOthersNorReplaceThem) {
  showForFile("1");
  showForFile("2");
  show("a");
  showForFile("3");
  showForFile("4");
  show("b");
  EXPECT_EQ(turn(), "2,a,4,b");
}

TEST_F(StatusTexts, OfAFileAreComposedWhenTheyAreDisplayed) {
  int composed = 0;
  for (int i = 0; i < 3; ++i) line.showForFile([&composed] { return QString::number(++composed); });
  EXPECT_EQ(composed, 0);
  EXPECT_EQ(turn(), "1");
}

TEST_F(StatusTexts, OfAFileThatComeWhileAnotherIsDisplayedAppearAfterIt) {
  line.showForFile([this] {
    showForFile("2");
    return QStringLiteral("1");
  });
  EXPECT_EQ(turn(), "1,2");
}

}  // namespace kestrova
