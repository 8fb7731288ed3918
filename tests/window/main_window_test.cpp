#include "window/elided_label.h"
#include "window/source_list.h"
#include "window/value_combo_box.h"
#include "window_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QSettings>
#include <QTimer>
#include <QUrl>

#include <gmock/gmock.h>

namespace kestrova::test {

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class AWindow : public WindowTest {
 protected:
  QStringList rows() {
    QStringList texts;
    auto& list = widget<SourceList>("sourceList");
    for (int row = 0; row < list.count(); ++row) texts << list.item(row)->text();
    return texts;
  }
  QString shown(const char* combo) { return widget<ValueComboBox>(combo).displayedValue(); }
  QVariant saved(const char* key) {
    return QSettings(settingsFile(), QSettings::IniFormat).value(QString::fromLatin1(key));
  }
  void addThreeSources() {
    for (const char* name : {"a", "b", "c"}) addSource(Path("/sources") / name);
  }
  void selectRow(int row, Qt::KeyboardModifiers modifiers = {}) {
    auto& list = widget<SourceList>("sourceList");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers,
                      list.visualItemRect(list.item(row)).center());
  }
};

TEST_F(AWindow, StandsReadyAtAFirstLaunch) {
  open();
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Start"));
  EXPECT_TRUE(isEnabled("buttonStart"));
  EXPECT_EQ(title("buttonStop"), QStringLiteral("Stop"));
  EXPECT_FALSE(isEnabled("buttonStop"));
  EXPECT_TRUE(widget<QCheckBox>("chkRotate").isChecked());
  EXPECT_FALSE(widget<QCheckBox>("chkFilterSmallPhotos").isChecked());
  EXPECT_FALSE(widget<QCheckBox>("chkFilterSmallVideos").isChecked());
  EXPECT_TRUE(widget<QProgressBar>("processBar").isVisible());
  EXPECT_FALSE(widget<QProgressBar>("sourceProgress").isVisible());
  EXPECT_FALSE(isEnabled("buttonRemoveSource"));
}

TEST_F(AWindow, ShowsTheCopyTextInTheFolderFormatAtAFirstLaunch) {
  open();
  EXPECT_EQ(shown("comboCopy"), QStringLiteral("Photos and videos"));
  EXPECT_EQ(shown("comboFolderFormat"), QStringLiteral("Photos and videos"));
  EXPECT_EQ(widget<ValueComboBox>("comboFolderFormat").currentIndex(), 0);
  EXPECT_EQ(shown("comboResolution"), QStringLiteral("Original size"));
  EXPECT_EQ(shown("comboPhotoFormats"), QStringLiteral("JPEG"));
}

TEST_F(AWindow, TakesAChoiceFromTheListAndSavesIt) {
  open();
  auto& combo = widget<ValueComboBox>("comboFolderFormat");
  QTest::mouseClick(&combo, Qt::LeftButton);
  auto* list = combo.view();
  ASSERT_TRUE(eventually([&] { return list->isVisible(); }));
  QTest::keyClick(list, Qt::Key_End);
  QTest::keyClick(list, Qt::Key_Return);
  ASSERT_TRUE(eventually([&] { return shown("comboFolderFormat") == QStringLiteral("2014/05/21"); }));
  EXPECT_EQ(controls().comboFolderFormat->indexOfSelectedItem(), 2);
  EXPECT_EQ(saved("selectedFolderFormat").toInt(), 2);
}

TEST_F(AWindow, TakesChoicesByKeyAndShowsThemAgainNextTime) {
  open();
  QTest::keyClick(&widget<ValueComboBox>("comboCopy"), Qt::Key_Down);
  QTest::keyClick(&widget<QCheckBox>("chkFilterSmallVideos"), Qt::Key_Space);
  EXPECT_EQ(saved("selectedCopy").toInt(), 1);
  EXPECT_EQ(saved("selectedFilterVideo").toInt(), CheckBox::on);
  window.reset();
  open();
  EXPECT_EQ(shown("comboCopy"), QStringLiteral("Photos only"));
  EXPECT_EQ(widget<ValueComboBox>("comboCopy").currentIndex(), 1);
  EXPECT_TRUE(widget<QCheckBox>("chkFilterSmallVideos").isChecked());
}

TEST_F(AWindow, AsksForBothStepsBeforeItStarts) {
  open();
  click("buttonStart");
  EXPECT_TRUE(waitForStatus("Please complete step 1 and 2 first"));
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Start"));
}

TEST_F(AWindow, ListsChosenFoldersAndTheTarget) {
  open();
  addThreeSources();
  addSource("/sources/a");
  setTarget("/target");
  EXPECT_THAT(rows(), ElementsAre(QStringLiteral("/sources/a"), QStringLiteral("/sources/b"),
                                  QStringLiteral("/sources/c")));
  EXPECT_TRUE(eventually([&] { return text("lblTargetPath") == QStringLiteral("/target"); }));
  click("buttonChooseTarget");  // cancelled
  frame();
  EXPECT_EQ(text("lblTargetPath"), QStringLiteral("/target"));
}

TEST_F(AWindow, RemovesTheSelectedRowsByKey) {
  open();
  addThreeSources();
  selectRow(0);
  selectRow(2, Qt::ControlModifier);
  QTest::keyClick(&widget<SourceList>("sourceList"), Qt::Key_Delete);
  EXPECT_THAT(rows(), ElementsAre(QStringLiteral("/sources/b")));
  EXPECT_THAT(controls().manager.sourcePathList.get(), ElementsAre(Path("/sources/b")));
}

TEST_F(AWindow, RemovesTheSelectedRowsByButton) {
  open();
  addThreeSources();
  selectRow(1);
  EXPECT_TRUE(isEnabled("buttonRemoveSource"));
  click("buttonRemoveSource");
  EXPECT_THAT(rows(), ElementsAre(QStringLiteral("/sources/a"), QStringLiteral("/sources/c")));
  EXPECT_FALSE(isEnabled("buttonRemoveSource")) << "nothing is selected any more";
}

class ADrop : public AWindow {
 protected:
  void drop(const Path& path, QPoint place) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.native()))});
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &enter);
    isTaken = enter.isAccepted();
    if (!isTaken) return;
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &drop);
  }
  QPoint middleOf(const char* name) {
    auto& place = widget<QWidget>(name);
    return place.mapTo(window.get(), place.rect().center());
  }
  /// Who would be asked about a drop there.
  QWidget* receiverAt(QPoint place) {
    auto* receiver = window->childAt(place);
    while (receiver && !receiver->acceptDrops()) receiver = receiver->parentWidget();
    return receiver;
  }
  bool isTaken = false;
};

TEST_F(ADrop, OnTheWindowAddsASource) {
  open();
  const QPoint place = middleOf("sourceList");
  EXPECT_EQ(receiverAt(place), window.get());
  drop(folder.path(), place);
  EXPECT_THAT(controls().manager.sourcePathList.get(), ElementsAre(folder.path()));
  EXPECT_THAT(rows(), ElementsAre(QString::fromStdString(folder.path().native())));
}

TEST_F(ADrop, OnTheSecondStepSetsTheTarget) {
  open();
  drop(folder.path(), middleOf("targetStep"));
  EXPECT_EQ(controls().manager.targetPath.get(), folder.path());
  EXPECT_TRUE(rows().isEmpty());
}

TEST_F(ADrop, OfAFileIsRefused) {
  open();
  drop(writeFile(folder / "a.jpg", "photo"), middleOf("sourceList"));
  EXPECT_FALSE(isTaken);
}

TEST_F(AWindow, IsReachedWhollyByTheTabKey) {
  open();
  addThreeSources();
  selectRow(0);
  controls().buttonStop->setEnabled(true);
  frame();
  QStringList reached;
  auto* first = &widget<QWidget>("sourceList");
  first->setFocus();
  do {
    reached << window->focusWidget()->objectName();
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
  } while (window->focusWidget() != first && reached.size() < 50);
  EXPECT_EQ(reached.join(u' ').toStdString(),
            "sourceList buttonAddSource buttonRemoveSource buttonChooseTarget comboCopy comboPhotoFormats "
            "comboFolderFormat comboResolution chkRotate chkFilterSmallPhotos chkFilterSmallVideos "
            "buttonStart buttonStop");
}

TEST_F(AWindow, HasADifferentMnemonicForEachThing) {
  open();
  QStringList texts{QStringLiteral("&Pause"), QStringLiteral("&Continue")};
  for (auto* label : window->findChildren<QLabel*>()) {
    if (label->buddy()) texts << label->text();
  }
  for (auto* button : window->findChildren<QAbstractButton*>()) texts << button->text();
  for (auto* action : window->menuBar()->actions()) texts << action->text();
  QMap<QChar, QString> owners;
  for (const QString& text : texts) {
    const auto at = text.indexOf(u'&');
    if (at < 0) continue;
    const QChar mnemonic = text.at(at + 1).toUpper();
    EXPECT_FALSE(owners.contains(mnemonic)) << qPrintable(text + u' ' + owners.value(mnemonic));
    owners.insert(mnemonic, text);
  }
  EXPECT_EQ(owners.size(), 18);
}

TEST_F(AWindow, FitsASmallScreen) {
  open();
  EXPECT_LE(window->minimumSizeHint().width(), 1000);
  EXPECT_LE(window->minimumSizeHint().height(), 540);
}

TEST_F(AWindow, OpensTheLinksOfItsMenu) {
  open();
  for (const char* name : {"actionHelp", "actionRequestFeature", "btnReview", "actionShareFacebook",
                           "actionShareTwitter", "actionShareGooglePlus", "actionSharePinterest"}) {
    window->findChild<QAction*>(QString::fromLatin1(name))->trigger();
  }
  ASSERT_EQ(workspace->addresses.size(), 7);
  EXPECT_TRUE(workspace->addresses[0].endsWith(QStringLiteral("/help")));
  EXPECT_TRUE(workspace->addresses[1].endsWith(QStringLiteral("/requestfeature.html#feature")));
  EXPECT_TRUE(workspace->addresses[2].startsWith(QStringLiteral("macappstore:")));
  EXPECT_TRUE(workspace->addresses[3].contains(QStringLiteral("facebook")));
  EXPECT_TRUE(workspace->addresses[4].contains(QStringLiteral("twitter")));
  EXPECT_TRUE(workspace->addresses[5].contains(QStringLiteral("plus.google")));
  EXPECT_TRUE(workspace->addresses[6].contains(QStringLiteral("pinterest")));
}

/// Runs the application's loop until the program ends; nothing when it had to be ended by force.
template <typename Request>
std::optional<int> resultAfter(Request request) {
  constexpr int byForce = 99;
  QTimer::singleShot(0, qApp, request);
  QTimer force;  // a local one, so that it cannot end what comes later
  force.callOnTimeout([] { QCoreApplication::exit(byForce); });
  force.start(500);
  const int result = QApplication::exec();
  return result == byForce ? std::nullopt : std::optional(result);
}

TEST_F(AWindow, AsksBeforeItIsClosed) {
  open();
  EXPECT_FALSE(window->close());
  ASSERT_EQ(alerts->alerts.size(), 1U);
  EXPECT_EQ(alerts->alerts[0].informativeText, QStringLiteral("Do you really want to exit?"));
  EXPECT_TRUE(window->isVisible());
}

TEST_F(AWindow, StaysOpenWhenTheUserCancels) {
  open();
  EXPECT_EQ(resultAfter([this] { window->close(); }), std::nullopt);
  EXPECT_EQ(resultAfter([] { QCoreApplication::quit(); }), std::nullopt) << "as the session asks it";
  EXPECT_EQ(alerts->alerts.size(), 2U);
  EXPECT_TRUE(window->isVisible());
}

TEST_F(AWindow, EndsTheProgramWhenTheUserWantsTo) {
  alerts->answer = AlertPanel::firstButtonReturn;
  open();
  EXPECT_EQ(resultAfter([this] { window->close(); }), 0);
  EXPECT_EQ(resultAfter([] { QCoreApplication::quit(); }), 0);
  EXPECT_EQ(resultAfter([this] { window->findChild<QAction*>(QStringLiteral("actionQuit"))->trigger(); }), 0);
  EXPECT_EQ(alerts->alerts.size(), 3U) << "asked once each time";
}

}  // namespace

}  // namespace kestrova::test
