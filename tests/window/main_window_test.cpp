#include "window/elided_label.h"
#include "window/source_list.h"
#include "window/value_combo_box.h"
#include "window_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSettings>
#include <QTimer>

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

TEST_F(AWindow, IsReachedWhollyByTheTabKey) {
  open();
  addThreeSources();
  selectRow(0);
  controls().buttonStop->setEnabled(true);
  widget<QWidget>("buttonOpenTarget").show();
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
            "buttonOpenTarget buttonStart buttonStop");
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
  EXPECT_EQ(owners.size(), 19);
}

class AMenu : public AWindow {
 protected:
  /// Opens a menu by keys and clicks its entry, once for each title.
  void press(std::initializer_list<const char*> path) {
    QWidget* place = window->menuBar();
    for (const char* title : path) {
      QAction* entry = entryOf(*place, title);
      ASSERT_NE(entry, nullptr) << title;
      const QRect area = qobject_cast<QMenuBar*>(place) != nullptr
                             ? static_cast<QMenuBar*>(place)->actionGeometry(entry)
                             : static_cast<QMenu*>(place)->actionGeometry(entry);
      QTest::mouseClick(place, Qt::LeftButton, {}, area.center());
      if (entry->menu() == nullptr) return;
      ASSERT_TRUE(eventually([entry] { return entry->menu()->isVisible(); })) << title;
      place = entry->menu();
    }
  }

 private:
  static QAction* entryOf(const QWidget& place, const char* title) {
    for (QAction* action : place.actions()) {
      if (action->text().remove(u'&') == QString::fromUtf8(title)) return action;
    }
    return nullptr;
  }
};

TEST_F(AMenu, OpensTheSevenAddresses) {
  open();
  press({"Help", "Help"});
  press({"Help", "Suggest a feature"});
  press({"Help", "Write a review"});
  for (const char* service : {"Facebook", "Twitter", "Google+", "Pinterest"})
    press({"Help", "Share", service});
  const QString site = QStringLiteral(KESTROVA_SITE);
  EXPECT_THAT(
      workspace->addresses,
      ElementsAre(
          site + QStringLiteral("/help"), site + QStringLiteral("/requestfeature.html#feature"),
          QStringLiteral("macappstore://userpub.itunes.apple.com/WebObjects/MZUserPublishing.woa/wa/"
                         "addUserReview?id=" KESTROVA_STORE_ID "&displayable-kind=30"),
          QStringLiteral("https://www.facebook.com/sharer/sharer.php?u=") + site,
          QStringLiteral("https://twitter.com/share?hashtags=kestrova&text=This%20is%20all%20in%20one%20"
                         "solution%20to%20organise%20your%20photo%20and%20video%20folders%20:%20&url=") +
              site,
          QStringLiteral("https://plus.google.com/share?url=") + site,
          QStringLiteral("https://pinterest.com/pin/create/link/?url=") + site));
}

TEST_F(AMenu, ChoosesFoldersAndQuits) {
  open();
  folders->answer = Path("/sources/a");
  press({"File", "Add source folder…"});
  folders->answer = Path("/target");
  press({"File", "Choose target folder…"});
  press({"File", "Quit"});
  EXPECT_THAT(rows(), ElementsAre(QStringLiteral("/sources/a")));
  EXPECT_EQ(controls().manager.targetPath.get(), Path("/target"));
  ASSERT_EQ(alerts->alerts.size(), 1U);
  EXPECT_EQ(alerts->alerts[0].buttons, QStringList({QStringLiteral("Exit"), QStringLiteral("Cancel")}));
}

/// Runs the application's loop until the program ends; nothing if it had to be ended by force.
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

TEST_F(AWindow, SavesBeforeItAsks) {
  open();
  QFile::remove(settingsFile());
  bool wereSaved = false;
  alerts->onRun = [&] { wereSaved = saved("selectedCopy").isValid(); };
  EXPECT_FALSE(window->close());
  EXPECT_TRUE(wereSaved);
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
