#include "window/folder_dialog.h"

#include "platform/file_url.h"
#include "support/temporary_folder.h"
#include "window/eventually.h"
#include "window/folder_panel.h"
#include "window/undecodable_folders.h"

#include <QFileDialog>
#include <QMainWindow>
#include <QPointer>
#include <QTest>
#include <QUrl>

#include <gmock/gmock.h>

namespace kestrova::test {

namespace {

using testing::ElementsAre;
using testing::Optional;

/// A chooser that shows a folder in which two names are not text, one with a folder inside.
class FoldersOfAnyName : public testing::Test {
 protected:
  FoldersOfAnyName() {
    std::filesystem::create_directories(folder / "\xff\xfe/inside");
    std::filesystem::create_directories(folder / "\xc3");
    std::filesystem::create_directories(folder / "plain");
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  }
  void open() {
    window.show();
    panel.beginSheetModalForWindow([this](int result, const Path& path) {
      if (result == FolderPanel::okResponse) chosen.push_back(path);
      isAnswered = true;
    });
    dialog = window.findChild<QFileDialog*>();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
    list = dynamic_cast<UndecodableFolders*>(dialog->findChild<QTreeWidget*>());
    ASSERT_NE(list, nullptr);
    enter(folder.path());
  }
  void enter(const Path& path) {
    dialog->setDirectory(QString::fromStdString(path.native()));
    Q_EMIT dialog->directoryEntered(QString::fromStdString(path.native()));
  }
  void choose(QTreeWidgetItem* row) {
    list->setCurrentItem(row);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_TRUE(eventually([this] { return isAnswered; }));
  }

  TemporaryFolder folder;
  QMainWindow window;
  WindowFolderPanel panel{window};
  QPointer<QFileDialog> dialog;
  UndecodableFolders* list = nullptr;
  std::vector<Path> chosen;
  bool isAnswered = false;
};

QUrl urlOf(const Path& path) {
  return QUrl::fromEncoded(QByteArray::fromStdString(fileUrlString(path)), QUrl::TolerantMode);
}

}  // namespace

TEST_F(FoldersOfAnyName, AreChosenFromTheirList) {
  open();
  ASSERT_EQ(list->topLevelItemCount(), 2);
  EXPECT_TRUE(list->isVisible());
  choose(list->topLevelItem(1));
  EXPECT_THAT(chosen, ElementsAre(folder / "\xff\xfe"));
}

TEST_F(FoldersOfAnyName, AreChosenBelowOthersOfTheirList) {
  open();
  list->topLevelItem(1)->setExpanded(true);
  ASSERT_EQ(list->topLevelItem(1)->childCount(), 1);
  choose(list->topLevelItem(1)->child(0));
  EXPECT_THAT(chosen, ElementsAre(folder / "\xff\xfe/inside"));
}

TEST_F(FoldersOfAnyName, HaveNoListWhereThereAreNone) {
  open();
  enter(folder / "plain");
  EXPECT_FALSE(list->isVisible());
  dialog->reject();
}

TEST_F(FoldersOfAnyName, AreFoundByTheAnswersOfOtherChoosers) {
  EXPECT_THAT(folderOfUrl(urlOf(folder / "plain")), Optional(folder / "plain"));
  EXPECT_THAT(folderOfUrl(urlOf(folder / "\xff\xfe/inside")), Optional(folder / "\xff\xfe/inside"));
  const auto shown = QString::fromStdString(folder.path().native()) + u'/';
  EXPECT_THAT(folderOfUrl(QUrl::fromLocalFile(shown + QChar::ReplacementCharacter)),
              Optional(folder / "\xc3"));
  EXPECT_EQ(folderOfUrl(QUrl::fromLocalFile(shown + QStringLiteral("missing"))), std::nullopt);
  std::filesystem::create_directories(folder / "\xc4");
  EXPECT_EQ(folderOfUrl(QUrl::fromLocalFile(shown + QChar::ReplacementCharacter)), std::nullopt);
}

}  // namespace kestrova::test
