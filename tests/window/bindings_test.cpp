#include "window/bindings.h"

#include "window/elided_label.h"
#include "window/eventually.h"
#include "window/value_combo_box.h"
#include "window/visible_text.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::eventually;
using test::severalFrames;

TEST(FrameRefresh, CopiesAControlThatChangesManyTimesOnlyOnceAFrame) {
  FrameRefresh refresh;
  const auto field = std::make_shared<TextField>();
  QStringList copies;
  refresh.bind(field, [&] { copies << field->stringValue(); });
  for (int i = 1; i <= 100'000; ++i) field->setStringValue(QString::number(i));
  EXPECT_TRUE(eventually([&] { return copies.size() > 1; }));
  QTest::qWait(severalFrames);
  EXPECT_EQ(copies, QStringList({QString(), QStringLiteral("100000")}));
}

TEST(FrameRefresh, LetsGoOfTheControlsWhenItEnds) {
  const auto field = std::make_shared<TextField>();
  {
    FrameRefresh refresh;
    refresh.bind(field, [] {});
  }
  EXPECT_FALSE(field->didChange);
  field->setStringValue(QStringLiteral("unseen"));
}

TEST(Bindings, ATextFieldShowsMarkupAsItStands) {
  FrameRefresh refresh;
  const auto field = std::make_shared<TextField>();
  QLabel label;
  bindTextField(refresh, field, label);
  field->setStringValue(QStringLiteral("<b>a\nb</b>"));
  EXPECT_TRUE(eventually([&] { return label.text() == QStringLiteral("<b>a\u240ab</b>"); }));
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(Bindings, AButtonActsOnTheControlAndTakesItsTitle) {
  FrameRefresh refresh;
  const auto button = std::make_shared<Button>();
  int clicks = 0;
  button->action = [&] { ++clicks; };
  button->setTitle(QStringLiteral("Start"));
  QPushButton widget;
  bindButton(refresh, button, widget);
  EXPECT_EQ(widget.text(), QStringLiteral("&Start"));
  QTest::mouseClick(&widget, Qt::LeftButton);
  button->setEnabled(false);
  EXPECT_TRUE(eventually([&] { return !widget.isEnabled(); }));
  QTest::mouseClick(&widget, Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
}

class CheckBoxBinding : public testing::Test {
 protected:
  CheckBoxBinding() {
    box->action = [this] { ++actions; };
  }
  void bind() { bindCheckBox(refresh, box, widget); }

  FrameRefresh refresh;
  const std::shared_ptr<CheckBox> box = std::make_shared<CheckBox>();
  QCheckBox widget;
  int actions = 0;
};

TEST_F(CheckBoxBinding, ShowsTheMixedStateUntilTheWidgetIsClicked) {
  box->setState(CheckBox::mixed);
  bind();
  EXPECT_EQ(widget.checkState(), Qt::PartiallyChecked);
  const QPoint indicator(8, widget.height() / 2);
  QTest::mouseClick(&widget, Qt::LeftButton, {}, indicator);
  EXPECT_EQ(box->state(), CheckBox::on);
  EXPECT_TRUE(eventually([&] { return !widget.isTristate(); }));
  EXPECT_EQ(widget.checkState(), Qt::Checked);
}

TEST_F(CheckBoxBinding, TakesTogglesThatAreNotClicks) {
  bind();
  auto* reader = QAccessible::queryAccessibleInterface(&widget)->actionInterface();
  reader->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(box->state(), CheckBox::on);
  reader->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(box->state(), CheckBox::off);
  EXPECT_EQ(actions, 2);
}

TEST_F(CheckBoxBinding, DoesNotActWhenTheProgramSetsTheState) {
  bind();
  box->setState(CheckBox::on);
  EXPECT_TRUE(eventually([&] { return widget.isChecked(); }));
  EXPECT_EQ(actions, 0);
}

class ProgressBarBinding : public testing::Test {
 protected:
  void bind() { bindProgressBar(refresh, progress, bar); }

  FrameRefresh refresh;
  const std::shared_ptr<ProgressIndicator> progress = std::make_shared<ProgressIndicator>();
  QProgressBar bar;
};

TEST_F(ProgressBarBinding, MovesTheBarWithoutAnEndWhileNoneIsKnown) {
  bind();
  EXPECT_EQ(bar.maximum(), 100);
  progress->setIndeterminate(true);
  progress->startAnimation();
  EXPECT_TRUE(eventually([&] { return bar.maximum() == 0; }));
  progress->stopAnimation();
  EXPECT_TRUE(eventually([&] { return bar.maximum() == 1; })) << "stands still";
  progress->setIndeterminate(false);
  progress->setMaxValue(5300);
  progress->setDoubleValue(1240);
  EXPECT_TRUE(eventually([&] { return bar.value() == 1240 && bar.maximum() == 5300; }));
}

TEST_F(ProgressBarBinding, NeverExceedsTheEndOfTheBar) {
  progress->setMaxValue(10);
  progress->setDoubleValue(1e12);
  bind();
  EXPECT_EQ(bar.value(), 10);
  progress->setMaxValue(0);
  EXPECT_TRUE(eventually([&] { return bar.value() == 0; }));
}

QImage pictureOf(int index, const QString& displayed) {
  ValueComboBox combo;
  combo.addItems({QStringLiteral("One"), QStringLiteral("Two")});
  combo.setCurrentIndex(index);
  combo.setDisplayedValue(displayed);
  combo.resize(120, 30);
  return combo.grab().toImage();
}

TEST(ValueComboBox, PaintsTheDisplayedValueNotTheSelectedItem) {
  const QString one = QStringLiteral("One");
  EXPECT_EQ(pictureOf(0, one), pictureOf(1, one));
  EXPECT_NE(pictureOf(0, one), pictureOf(0, QStringLiteral("Two")));
}

TEST(ElidedLabel, NeverAsksForTheWidthOfItsText) {
  ElidedLabel label;
  label.setText(QString(1000, u'x'));
  EXPECT_EQ(label.minimumSizeHint().width(), 0);
  EXPECT_GT(label.minimumSizeHint().height(), 0);
}

TEST(ElidedLabel, ShowsItsPlaceholderOnlyWhileEmpty) {
  const auto picture = [](const QString& text, const QString& placeholder) {
    ElidedLabel label;
    label.setText(text);
    label.setPlaceholderText(placeholder);
    label.resize(200, 30);
    return label.grab().toImage();
  };
  const QString hint = QStringLiteral("hint");
  EXPECT_NE(picture({}, hint), picture({}, {}));
  EXPECT_EQ(picture(QStringLiteral("path"), hint), picture(QStringLiteral("path"), {}));
}

TEST(VisibleText, PicturesControlCharacters) {
  EXPECT_EQ(visibleText(QStringLiteral("a\tb\x7f")), QStringLiteral("a\u2409b\u2421"));
}

}  // namespace

}  // namespace kestrova
