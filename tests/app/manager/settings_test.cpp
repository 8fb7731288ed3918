#include "support/headless_program.h"

#include <QDataStream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrova {

namespace {

using testing::ElementsAre;

class RecordingDefaults : public UserDefaults {
 public:
  QVariant value(const QString& key) const override { return values.value(key); }
  void setValue(const QString& key, const QVariant& value) override {
    if (key == failingKey) throw std::runtime_error("refused");
    values.insert(key, value);
    written << key;
  }
  void synchronize() override { ++synchronized; }

  QMap<QString, QVariant> values;
  QStringList written;
  QString failingKey;
  int synchronized = 0;
};

class Settings : public testing::Test {
 protected:
  void store(const char* key, const QVariant& value) { defaults->values.insert(QLatin1String(key), value); }
  int stored(const char* key) const { return defaults->values.value(QLatin1String(key)).toInt(); }
  /// The URLs archived under the key.
  QStringList archived(const char* key) const {
    QStringList urls;
    QDataStream stream(defaults->values.value(QLatin1String(key)).toByteArray());
    stream.setVersion(QDataStream::Qt_6_0);
    stream >> urls;
    return urls;
  }
  void launch() { program = std::make_unique<test::HeadlessProgram>(systemFileManager(), defaults); }
  MainInterface& controls() { return *program->interface; }
  OrganiseManager& manager() { return program->manager(); }
  QString extensionImages() { return program->manager().extensionImages.get().text(); }

  std::shared_ptr<RecordingDefaults> defaults = std::make_shared<RecordingDefaults>();
  std::unique_ptr<test::HeadlessProgram> program;
};

}  // namespace

TEST_F(Settings, AtAFirstLaunchShowTheFirstItemsAndTheCopyTextInTheFolderFormat) {
  launch();
  for (const auto& combo : {controls().comboCopy, controls().comboFolderFormat, controls().comboResolution,
                            controls().comboPhotoFormats}) {
    EXPECT_EQ(combo->indexOfSelectedItem(), 0);
  }
  EXPECT_EQ(controls().comboCopy->objectValue(), QStringLiteral("Photos and videos"));
  EXPECT_EQ(controls().comboFolderFormat->objectValue(), QStringLiteral("Photos and videos"));
  EXPECT_EQ(controls().comboResolution->objectValue(), QStringLiteral("Original size"));
  EXPECT_EQ(controls().comboPhotoFormats->objectValue(), QStringLiteral("JPEG"));
  EXPECT_EQ(controls().chkRotate->state(), CheckBox::on);
  EXPECT_EQ(controls().chkFilterSmallPhotos->state(), CheckBox::off);
  EXPECT_EQ(controls().chkFilterSmallVideos->state(), CheckBox::off);
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,)"));
  EXPECT_EQ(program->manager().extensionVideo.get().text(),
            QStringLiteral("(,avi,mov,divx,mp4,mpg,m4v,flv,mkv,)"));
  EXPECT_TRUE(program->manager().sourcePathList.get().empty());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_EQ(controls().buttonStart->title(), QStringLiteral("Start"));
  EXPECT_TRUE(defaults->written.isEmpty());
}

TEST_F(Settings, FindStopDisabledAndDisableItOnceMore) {
  Host host;
  host.defaults = defaults;
  const MainInterface unloaded(std::move(host));
  EXPECT_FALSE(unloaded.buttonStop->isEnabled());
  launch();
  controls().buttonStop->setEnabled(true);
  manager().loadSettings();
  EXPECT_FALSE(controls().buttonStop->isEnabled());
}

TEST_F(Settings, BringTheEnglishNamesOfMonthsAndDays) {
  launch();
  EXPECT_THAT(manager().months, ElementsAre("January", "February", "March", "April", "May", "June", "July",
                                            "August", "September", "October", "November", "December"));
  EXPECT_THAT(manager().days,
              ElementsAre("Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"));
}

TEST_F(Settings, StartWithoutSources) {
  launch();
  manager().addSource("/source");
  manager().loadSettings();
  EXPECT_TRUE(manager().sourcePathList.get().empty());
}

TEST_F(Settings, ShowTheFolderFormatsOwnTextWhenItIsStored) {
  store("selectedFolderFormat", 0);
  store("selectedCopy", 2);
  launch();
  EXPECT_EQ(controls().comboFolderFormat->objectValue(), QStringLiteral("2014/05/21-May-2014 Wednesday"));
}

TEST_F(Settings, ShowTheStoredCopyTextInAFolderFormatThatIsNotStored) {
  store("selectedCopy", 2);
  launch();
  EXPECT_EQ(controls().comboFolderFormat->objectValue(), QStringLiteral("Videos only"));
  EXPECT_EQ(controls().comboFolderFormat->indexOfSelectedItem(), 0);
}

TEST_F(Settings, OutOfRangeSelectTheFirstItem) {
  for (const int value : {7, -1, 3}) {
    store("selectedResolution", value);
    launch();
    EXPECT_EQ(controls().comboResolution->indexOfSelectedItem(), 0) << value;
    EXPECT_EQ(controls().comboResolution->objectValue(), QStringLiteral("Original size"));
  }
}

TEST_F(Settings, ForAllPhotoFormatsTakePngToo) {
  store("selectedPhotoFormats", 2);
  launch();
  EXPECT_EQ(controls().comboPhotoFormats->indexOfSelectedItem(), 2);
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,tiff,tif,png,)"));
}

TEST_F(Settings, ThatAreOutOfRangeForPhotoFormatsKeepJpeg) {
  store("selectedPhotoFormats", 9);
  launch();
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,)"));
}

TEST_F(Settings, DecideTheExtensionListAsA32BitNumberAndTheComboAsA64BitOne) {
  store("selectedPhotoFormats", static_cast<qlonglong>(4294967298));
  launch();
  EXPECT_EQ(controls().comboPhotoFormats->indexOfSelectedItem(), 0);
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,tiff,tif,png,)"));
}

TEST_F(Settings, OfTheWrongKindAreReadAsTheNumberThatTheyBeginWith) {
  store("selectedCopy", QStringLiteral("2 of them"));
  store("selectedResolution", QStringLiteral("none"));
  store("selectedFolderFormat", 1.9);
  store("selectedPhotoFormats", QByteArray("\x01\x02"));
  launch();
  EXPECT_EQ(controls().comboCopy->indexOfSelectedItem(), 2);
  EXPECT_EQ(controls().comboResolution->indexOfSelectedItem(), 0);
  EXPECT_EQ(controls().comboFolderFormat->indexOfSelectedItem(), 1);
  EXPECT_EQ(controls().comboPhotoFormats->indexOfSelectedItem(), 0);
}

TEST_F(Settings, RestoreTheCheckBoxesThatAreStored) {
  store("selectedRotate", 0);
  store("selectedFilterVideo", 1);
  launch();
  EXPECT_EQ(controls().chkRotate->state(), CheckBox::off);
  EXPECT_EQ(controls().chkFilterSmallPhotos->state(), CheckBox::off) << "is not stored";
  EXPECT_EQ(controls().chkFilterSmallVideos->state(), CheckBox::on);
}

TEST_F(Settings, RestoreEveryControlFromItsOwnKey) {
  store("selectedCopy", 1);
  store("selectedFolderFormat", 2);
  store("selectedResolution", 1);
  store("selectedPhotoFormats", 2);
  store("selectedRotate", -1);
  store("selectedFilterPhoto", 1);
  store("selectedFilterVideo", 0);
  launch();
  EXPECT_EQ(controls().comboCopy->objectValue(), QStringLiteral("Photos only"));
  EXPECT_EQ(controls().comboFolderFormat->objectValue(), QStringLiteral("2014/05/21"));
  EXPECT_EQ(controls().comboResolution->objectValue(), QStringLiteral("720P (1280 x 720)"));
  EXPECT_EQ(controls().comboPhotoFormats->objectValue(), QStringLiteral("JPEG, TIFF and PNG"));
  EXPECT_EQ(controls().chkRotate->state(), CheckBox::mixed);
  EXPECT_EQ(controls().chkFilterSmallPhotos->state(), CheckBox::on);
  EXPECT_EQ(controls().chkFilterSmallVideos->state(), CheckBox::off);
}

TEST_F(Settings, SaveEveryControlUnderItsOwnKey) {
  launch();
  controls().comboCopy->chooseItem(0);
  controls().comboFolderFormat->chooseItem(1);
  controls().comboResolution->selectItemAtIndex(-1);
  controls().comboPhotoFormats->chooseItem(2);
  controls().chkRotate->setState(CheckBox::mixed);
  controls().chkFilterSmallPhotos->setState(CheckBox::on);
  controls().chkFilterSmallVideos->setState(CheckBox::off);
  manager().saveSettings();
  const std::vector<int> saved{stored("selectedCopy"),       stored("selectedFolderFormat"),
                               stored("selectedResolution"), stored("selectedPhotoFormats"),
                               stored("selectedRotate"),     stored("selectedFilterPhoto"),
                               stored("selectedFilterVideo")};
  EXPECT_EQ(saved, (std::vector<int>{0, 1, -1, 2, -1, 1, 0}));
}

TEST_F(Settings, AreSavedUnderNineKeysInTheirOrder) {
  launch();
  controls().comboResolution->chooseItem(1);
  EXPECT_EQ(defaults->written,
            QStringList({QStringLiteral("sourcePathList"), QStringLiteral("targetPath"),
                         QStringLiteral("selectedCopy"), QStringLiteral("selectedFolderFormat"),
                         QStringLiteral("selectedResolution"), QStringLiteral("selectedPhotoFormats"),
                         QStringLiteral("selectedRotate"), QStringLiteral("selectedFilterPhoto"),
                         QStringLiteral("selectedFilterVideo")}));
  EXPECT_EQ(defaults->synchronized, 1);
  EXPECT_EQ(stored("selectedResolution"), 1);
  EXPECT_EQ(stored("selectedRotate"), 1);
}

TEST_F(Settings, StoreMinusOneForAComboBoxWithoutSelectionAndForAMixedCheckBox) {
  launch();
  controls().chkRotate->setState(CheckBox::mixed);
  controls().comboCopy->selectItemAtIndex(-1);
  EXPECT_EQ(stored("selectedCopy"), -1);
  EXPECT_EQ(stored("selectedRotate"), -1);
}

TEST_F(Settings, AreSavedWhenACheckBoxIsClicked) {
  launch();
  controls().chkFilterSmallPhotos->performClick();
  EXPECT_EQ(stored("selectedFilterPhoto"), 1);
}

TEST_F(Settings, AreNotSavedWhileTheyAreLoaded) {
  launch();
  defaults->written.clear();
  program->manager().loadSettings();
  EXPECT_TRUE(defaults->written.isEmpty());
  program->manager().loadingSettings = true;
  controls().comboPhotoFormats->chooseItem(2);
  EXPECT_TRUE(defaults->written.isEmpty());
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,)"));
}

TEST_F(Settings, FollowTheComboBoxOfPhotoFormatsAfterAnyChoice) {
  launch();
  controls().comboPhotoFormats->chooseItem(1);
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,tiff,tif,)"));
  controls().comboCopy->chooseItem(1);
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,tiff,tif,)"));
  controls().comboPhotoFormats->selectItemAtIndex(-1);
  EXPECT_EQ(extensionImages(), QStringLiteral("(,jpg,jpeg,tiff,tif,)"));
}

TEST_F(Settings, NeverRestoreSourcesAndTarget) {
  launch();
  program->chooseFolders();
  launch();
  EXPECT_TRUE(program->manager().sourcePathList.get().empty());
  EXPECT_FALSE(program->manager().targetPath.get().has_value());
  EXPECT_EQ(controls().lblTargetPath->stringValue(), QString());
}

TEST_F(Settings, ArchiveTheUrlsOfTheSourcesAndOfTheTarget) {
  launch();
  manager().saveSettings();
  EXPECT_TRUE(archived("targetPath").isEmpty());
  manager().addSource("/one source");
  manager().addSource("/another");
  manager().setTarget("/the target");
  EXPECT_EQ(archived("sourcePathList"),
            QStringList({QStringLiteral("file:///one%20source"), QStringLiteral("file:///another")}));
  EXPECT_EQ(archived("targetPath"), QStringList(QStringLiteral("file:///the%20target")));
}

TEST_F(Settings, ThatCannotBeSavedLeaveTheRestUnsavedInSilence) {
  launch();
  defaults->failingKey = QStringLiteral("selectedResolution");
  EXPECT_NO_THROW(program->manager().saveSettings());
  EXPECT_EQ(defaults->written.last(), QStringLiteral("selectedFolderFormat"));
  EXPECT_EQ(defaults->synchronized, 0);
}

}  // namespace kestrova
