#include "german.h"
#include "window/elided_label.h"
#include "window/source_list.h"
#include "window_fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace kestrova::test {

namespace {

/// The window on a screen of 1024 x 600 points, or on the part of a larger one that such a screen would be.
class Layout : public WindowTest {
 protected:
  static constexpr QSize smallScreen{1024, 600};

  void openSmall() {
    open();
    window->move(0, 0);
    window->resize(window->size().boundedTo(smallScreen));
    fill();
  }

  /// Shows long numbers, and every line that there may be.
  void fill() {
    auto& c = controls();
    for (const auto& count :
         {c.lblPhotoCount, c.lblVideoCount, c.lblTotalCount, c.lblDuplicateCount, c.trgPhotoCount,
          c.trgVideoCount, c.trgRotatedCount, c.trgTotalCount, c.trgExistCount, c.trgFilteredCount}) {
      count->setStringValue(QStringLiteral("1234567"));
    }
    for (const auto& size :
         {c.lblPhotoSize, c.lblVideoSize, c.lblTotalSize, c.lblDuplicateSize, c.trgPhotoSize, c.trgVideoSize,
          c.trgRotatedSize, c.trgTotalSize, c.trgExistSize, c.trgFilteredSize}) {
      size->setStringValue(QStringLiteral("1234567.89 MB"));
    }
    frame();
    widget<QLabel>("progressText")
        .setText(
            progressText({.run = {.phase = RunPhase::executing}, .found = 1'234'567, .done = 1'234'567}));
    widget<QLabel>("timeLeftText").setText(timeLeftText(std::chrono::minutes(59)));
    widget<QLabel>("remainderText")
        .setText(remainderText({.failed = 123, .nameTaken = 12'345, .alreadyThere = 12'345}));
    widget<QWidget>("remainderBox").show();
    widget<QWidget>("buttonOpenTarget").show();
    QTest::qWait(severalFrames);
  }

  std::vector<QWidget*> texts() {
    std::vector<QWidget*> found;
    for (auto* each : window->findChildren<QWidget*>()) {
      const bool isText = qobject_cast<QLabel*>(each) || qobject_cast<QAbstractButton*>(each) ||
                          qobject_cast<QComboBox*>(each);
      const bool mayBeShort = qobject_cast<ElidedLabel*>(each) != nullptr;
      if (isText && !mayBeShort && each->isVisible() && !each->objectName().startsWith(u"qt_"))
        found.push_back(each);
    }
    return found;
  }

  void expectNothingClipped() {
    for (const QWidget* each : texts()) {
      const auto name = each->objectName().toStdString();
      const QSize needed = each->minimumSizeHint();
      EXPECT_GE(each->width(), needed.width()) << name;
      const int height = each->hasHeightForWidth() ? each->heightForWidth(each->width()) : needed.height();
      EXPECT_GE(each->height(), height) << name;
      EXPECT_TRUE(each->parentWidget()->rect().contains(each->geometry())) << name;
      for (const QWidget* other : texts()) {
        const bool overlap = other != each && other->parentWidget() == each->parentWidget() &&
                             other->geometry().intersects(each->geometry());
        EXPECT_FALSE(overlap) << name << " and " << other->objectName().toStdString();
      }
    }
    EXPECT_TRUE(window->rect().contains(widget<QWidget>("run").geometry()));
  }

  void expectAllWithinReach() {
    auto& area = widget<QScrollArea>("settingsArea");
    EXPECT_FALSE(area.horizontalScrollBar()->isVisible());
    constexpr int severalRows = 200;  // pixels
    EXPECT_GE(area.viewport()->height(), severalRows);
    for (const char* name : {"sourceHeading", "sourceList", "comboFolderFormat", "chkFilterSmallVideos",
                             "lblDuplicateSize", "trgFilteredSize", "lblTargetExistLabel"}) {
      auto& each = widget<QWidget>(name);
      area.ensureWidgetVisible(&each, 0, 0);
      EXPECT_EQ(each.visibleRegion().boundingRect().size(), each.size()) << name;
    }
  }
};

TEST_F(Layout, OpensWithinItsScreen) {
  open();
  const QSize screen = window->screen()->availableSize();
  EXPECT_EQ(window->size().boundedTo(screen), window->size());
}

TEST_F(Layout, FitsASmallScreen) {
  openSmall();
  EXPECT_LE(window->width(), smallScreen.width());
  EXPECT_LE(window->height(), smallScreen.height());
}

TEST_F(Layout, ClipsNothingOnASmallScreen) {
  openSmall();
  expectNothingClipped();
  expectAllWithinReach();
}

TEST_F(Layout, ClipsNothingInGerman) {
  const German german;
  openSmall();
  EXPECT_LE(window->width(), smallScreen.width());
  EXPECT_LE(window->height(), smallScreen.height());
  expectNothingClipped();
  expectAllWithinReach();
}

TEST_F(Layout, ShowsWhereTheKeyboardIs) {
  openSmall();
  addSource("/sources/a");
  auto& area = widget<QScrollArea>("settingsArea");
  area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
  auto& list = widget<SourceList>("sourceList");
  list.setFocus();
  for (int i = 0; i < 10; ++i) {
    QWidget& at = *window->focusWidget();
    EXPECT_EQ(at.visibleRegion().boundingRect().width(), at.width()) << at.objectName().toStdString();
    EXPECT_FALSE(at.visibleRegion().isEmpty()) << at.objectName().toStdString();
    QTest::keyClick(&at, Qt::Key_Tab);
  }
}

TEST_F(Layout, DoesNotMoveWhileARunGoesOn) {
  open();
  frame();
  const int before = widget<QWidget>("processBar").width();
  const QPoint start = widget<QWidget>("buttonStart").pos();
  widget<QLabel>("progressText")
      .setText(progressText({.run = {.phase = RunPhase::executing}, .found = 88'888, .done = 1}));
  widget<QLabel>("timeLeftText").setText(timeLeftText(std::chrono::minutes(5)));
  QTest::qWait(severalFrames);
  EXPECT_EQ(widget<QWidget>("processBar").width(), before);
  EXPECT_EQ(widget<QWidget>("buttonStart").pos(), start);
}

}  // namespace

}  // namespace kestrova::test
