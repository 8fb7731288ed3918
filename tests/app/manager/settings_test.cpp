#include "support/headless_program.h"

#include <QDataStream>
#include <QFile>
#include <QSettings>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

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
  void launch() { program = std::make_unique<test::HeadlessProgram>(systemFileManager(), defaults); }
  MainInterface& controls() { return *program->interface; }
  QString extensionImages() { return program->manager().extensionImages.get(); }

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
  EXPECT_EQ(program->manager().extensionVideo.get(), QStringLiteral("(,avi,mov,divx,mp4,mpg,m4v,flv,mkv,)"));
  EXPECT_TRUE(program->manager().sourcePathList.get().empty());
  EXPECT_FALSE(controls().buttonStop->isEnabled());
  EXPECT_TRUE(controls().buttonStart->isEnabled());
  EXPECT_EQ(controls().buttonStart->title(), QStringLiteral("Start"));
  EXPECT_TRUE(defaults->written.isEmpty());
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
  EXPECT_EQ(controls().chkFilterSmallPhotos->state(), CheckBox::off);
  EXPECT_EQ(controls().chkFilterSmallVideos->state(), CheckBox::on);
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
  const auto source = program->source;
  launch();
  EXPECT_TRUE(program->manager().sourcePathList.get().empty());
  EXPECT_FALSE(program->manager().targetPath.get().has_value());
  EXPECT_EQ(controls().lblTargetPath->stringValue(), QString());

  QStringList archived;
  QDataStream stream(defaults->values.value(QStringLiteral("sourcePathList")).toByteArray());
  stream.setVersion(QDataStream::Qt_6_0);
  stream >> archived;
  EXPECT_EQ(archived, QStringList(QStringLiteral("file://") + QString::fromStdString(source.native())));
}

TEST_F(Settings, ThatCannotBeSavedLeaveTheRestUnsavedInSilence) {
  launch();
  defaults->failingKey = QStringLiteral("selectedResolution");
  EXPECT_NO_THROW(program->manager().saveSettings());
  EXPECT_EQ(defaults->written.last(), QStringLiteral("selectedFolderFormat"));
  EXPECT_EQ(defaults->synchronized, 0);
}

TEST_F(Settings, SurviveInTheirFileFromOneLaunchToTheNext) {
  const test::TemporaryFolder folder;
  const QString file = QString::fromStdString((folder / "Kestrova.conf").native());
  {
    test::HeadlessProgram first(systemFileManager(), userDefaultsInFile(file));
    first.interface->comboResolution->chooseItem(2);
    first.interface->chkRotate->performClick();
  }
  EXPECT_EQ(QSettings(file, QSettings::IniFormat).allKeys().size(), 9);
  test::HeadlessProgram second(systemFileManager(), userDefaultsInFile(file));
  EXPECT_EQ(second.interface->comboResolution->indexOfSelectedItem(), 2);
  EXPECT_EQ(second.interface->chkRotate->state(), CheckBox::off);
}

TEST_F(Settings, InAFileThatIsGarbageOrCannotBeWrittenDoNotStopTheProgram) {
  const test::TemporaryFolder folder;
  const Path garbage = test::writeFile(folder / "garbage.conf", std::string_view("\xff\0[[[=\n\n%zz", 11));
  for (const Path& file : {garbage, folder / "garbage.conf" / "below a file", folder.path()}) {
    test::HeadlessProgram launched(systemFileManager(),
                                   userDefaultsInFile(QString::fromStdString(file.native())));
    EXPECT_EQ(launched.interface->comboCopy->indexOfSelectedItem(), 0);
    launched.interface->comboCopy->chooseItem(1);
    EXPECT_EQ(launched.interface->comboCopy->indexOfSelectedItem(), 1);
  }
}

}  // namespace kestrova
