#include "window/elided_label.h"
#include "window/readable_palette.h"
#include "window/source_list.h"
#include "window/value_combo_box.h"
#include "window_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QMenuBar>
#include <QPushButton>
#include <map>

namespace kestrova::test {

namespace {

constexpr double enough = 4.5;

/// A dark scheme whose quiet text and selection are too faint.
QPalette darkPalette() {
  QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    palette.setColor(role, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Disabled, role, QColor(0x70, 0x74, 0x78));
  }
  palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
  palette.setColor(QPalette::PlaceholderText, QColor(0xfc, 0xfc, 0xfc, 80));
  return palette;
}

TEST(Contrast, IsThatOfTheGuidelines) {
  constexpr double asPublished = 0.005;  // two digits
  EXPECT_DOUBLE_EQ(contrastRatio(Qt::white, Qt::black), 21.0);
  EXPECT_DOUBLE_EQ(contrastRatio(Qt::red, Qt::red), 1.0);
  EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, asPublished);
  EXPECT_NEAR(contrastRatio(Qt::white, QColor(0x76, 0x76, 0x76)), 4.54, asPublished);
}

TEST(ReadableColors, LeaveAGoodPaletteAlone) {
  QPalette good(Qt::white, Qt::white);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
    good.setColor(role, Qt::black);
  }
  good.setColor(QPalette::Highlight, Qt::darkBlue);
  good.setColor(QPalette::HighlightedText, Qt::white);
  EXPECT_EQ(readableColors(good).resolveMask(), 0U);
}

TEST(ReadableColors, ChangeAFaintColourNoMoreThanNeeded) {
  constexpr double aFewSteps = 0.4;
  constexpr double unseen = 0.2;
  const QPalette dark = darkPalette();
  const QPalette repaired = readableColors(dark);
  const QColor quiet = repaired.color(QPalette::Active, QPalette::PlaceholderText);
  EXPECT_GE(contrastRatio(quiet, dark.color(QPalette::Base)), enough);
  EXPECT_GE(contrastRatio(quiet, dark.color(QPalette::Window)), enough);
  EXPECT_LT(contrastRatio(quiet, dark.color(QPalette::Window)), enough + aFewSteps);
  const QColor selection = repaired.color(QPalette::Active, QPalette::Highlight);
  EXPECT_GE(contrastRatio(selection, Qt::white), enough - unseen);
  EXPECT_GE(contrastRatio(selection, QColor(0xfc, 0xfc, 0xfc)), enough);
}

/// The contrast of the text in a picture: that of the most frequent colour with the colour farthest from it.
double contrastIn(const QImage& picture) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
  }
  const auto most = std::max_element(counts.begin(), counts.end(), [](const auto& one, const auto& other) {
    return one.second < other.second;
  });
  double best = 1;
  for (const auto& [color, count] : counts) best = std::max(best, contrastRatio(color, most->first));
  return best;
}

class ContrastTest : public WindowTest, public testing::WithParamInterface<bool> {
 protected:
  ContrastTest() {
    if (GetParam()) QApplication::setPalette(darkPalette());
  }
  ~ContrastTest() override { QApplication::setPalette(QPalette()); }

  /// The widget on the screen, without frames at its edge.
  double contrastOf(const QWidget& shown, int edge) {
    const QRect inner = shown.rect().adjusted(edge, edge, -edge, -edge);
    const QRect area(shown.mapTo(window.get(), inner.topLeft()), inner.size());
    return contrastIn(window->grab(area).toImage());
  }
};

TEST_P(ContrastTest, IsEnoughForEveryText) {
  open();
  controls().lblStatus->setStringValue(QStringLiteral("Copying Photo (JPG) 961"));
  for (const auto& label : {controls().lblPhotoCount, controls().trgTotalSize})
    label->setStringValue(QStringLiteral("12345"));
  widget<QLabel>("progressText").setText(QStringLiteral("1,240 of 5,300 files"));
  frame();
  int seen = 0;
  for (auto* label : window->findChildren<QLabel*>()) {
    const auto* elided = qobject_cast<ElidedLabel*>(label);
    if (!label->isVisible() || (label->text().isEmpty() && !(elided && !elided->placeholderText().isEmpty())))
      continue;
    EXPECT_GE(contrastOf(*label, 0), enough) << label->objectName().toStdString();
    ++seen;
  }
  for (auto* button : window->findChildren<QAbstractButton*>()) {
    if (!button->isVisible() || !button->isEnabled() || button->text().isEmpty()) continue;
    EXPECT_GE(contrastOf(*button, 6), enough) << button->objectName().toStdString();
    ++seen;
  }
  for (auto* combo : window->findChildren<ValueComboBox*>()) {
    EXPECT_GE(contrastOf(*combo, 6), enough) << combo->objectName().toStdString();
    ++seen;
  }
  constexpr int mostOfTheWindow = 35;
  EXPECT_GE(seen, mostOfTheWindow) << "few texts were measured";
  EXPECT_GE(contrastOf(*window->menuBar(), 2), enough);
}

TEST_P(ContrastTest, IsEnoughInTheListWhateverItShows) {
  open();
  auto& list = widget<SourceList>("sourceList");
  EXPECT_GE(contrastOf(list, 4), enough) << "what an empty list says";
  addSource("/sources/a");
  frame();
  EXPECT_GE(contrastOf(list, 4), enough);
  list.setCurrentRow(0, QItemSelectionModel::Select);
  frame();
  const QImage row =
      list.viewport()->grab(list.visualItemRect(list.item(0)).adjusted(2, 2, -2, -2)).toImage();
  EXPECT_GE(contrastIn(row), enough) << "a selected row";
}

INSTANTIATE_TEST_SUITE_P(OfTheWindow, ContrastTest, testing::Bool(),
                         [](const auto& dark) { return dark.param ? "Dark" : "Light"; });

TEST_F(WindowTest, FollowsTheDesktopsColours) {
  open();
  QApplication::setPalette(darkPalette());
  frame();
  EXPECT_EQ(window->palette().color(QPalette::Window), darkPalette().color(QPalette::Window));
  EXPECT_EQ(widget<SourceList>("sourceList").palette().color(QPalette::PlaceholderText),
            readableColors(darkPalette()).color(QPalette::Active, QPalette::PlaceholderText));
  QApplication::setPalette(QPalette());
  frame();
  EXPECT_NE(window->palette().color(QPalette::Window), darkPalette().color(QPalette::Window));
}

}  // namespace

}  // namespace kestrova::test
