#include "support/headless_program.h"

#include <QFileInfo>
#include <QSettings>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

QString userSettingsFolder() {
  const QString file = QSettings(QStringLiteral("any"), QStringLiteral("any")).fileName();
  return QFileInfo(QFileInfo(file).path()).path();
}

/// Keeps the user's settings in this folder for as long as it lives.
class UserSettingsIn {
 public:
  explicit UserSettingsIn(const Path& folder) { keepIn(QString::fromStdString(folder.native())); }
  ~UserSettingsIn() { keepIn(previous_); }
  UserSettingsIn(const UserSettingsIn&) = delete;
  UserSettingsIn& operator=(const UserSettingsIn&) = delete;

 private:
  static void keepIn(const QString& folder) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
  }
  const QString previous_ = userSettingsFolder();
};

}  // namespace

TEST(SettingsFile, BringsChoicesFromOneLaunchToTheNext) {
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

TEST(SettingsFile, OfTheUserIsKestrovasOwn) {
  const test::TemporaryFolder folder;
  const UserSettingsIn settings(folder.path());
  test::HeadlessProgram program(systemFileManager(), standardUserDefaults());
  program.interface->comboResolution->chooseItem(2);
  EXPECT_EQ(test::filesBelow(folder.path()), std::vector<std::string>{"Kestrova/Kestrova.conf"});
  const QString file = QString::fromStdString((folder / "Kestrova" / "Kestrova.conf").native());
  EXPECT_EQ(QSettings(file, QSettings::IniFormat).value(QStringLiteral("selectedResolution")).toInt(), 2);
}

TEST(SettingsFile, ThatIsGarbageOrCannotBeWrittenDoesNotStopTheProgram) {
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
