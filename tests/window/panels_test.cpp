#include "support/temporary_folder.h"
#include "window/alert_panel.h"
#include "window/dropped_folders.h"
#include "window/eventually.h"
#include "window/folder_panel.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <gmock/gmock.h>

namespace kestrova::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Alert question{
    QStringLiteral("Alert"), QStringLiteral("Really?"), {QStringLiteral("Exit"), QStringLiteral("Cancel")}};

/// Shows the question and answers it as soon as it is on the screen.
template <typename Answer>
int answered(Answer answer) {
  QMainWindow window;
  window.show();
  WindowAlertPanel panel(window);
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box && box->windowHandle() && box->windowHandle()->isExposed()) {
      poll.stop();
      answer(*box);
    }
  });
  poll.start(5);
  return panel.runModal(question);
}

QPushButton* buttonOf(const QMessageBox& box, const char* title) {
  for (auto* button : box.findChildren<QPushButton*>()) {
    if (button->text().remove(u'&') == QLatin1String(title)) return button;
  }
  return nullptr;
}

TEST(AlertPanel, AnswersWithThePlaceOfThePressedButton) {
  EXPECT_EQ(answered([](QMessageBox& box) { QTest::mouseClick(buttonOf(box, "Exit"), Qt::LeftButton); }),
            AlertPanel::firstButtonReturn);
  EXPECT_EQ(answered([](QMessageBox& box) { QTest::mouseClick(buttonOf(box, "Cancel"), Qt::LeftButton); }),
            AlertPanel::firstButtonReturn + 1);
}

TEST(AlertPanel, ClosingItIsTheLastButton) {
  EXPECT_EQ(answered([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }),
            AlertPanel::firstButtonReturn + 1);
  EXPECT_EQ(answered([](QMessageBox& box) { box.close(); }), AlertPanel::firstButtonReturn + 1);
}

TEST(AlertPanel, WarnsWithTheGivenTextsAndItsFirstButtonAsTheDefault) {
  answered([](QMessageBox& box) {
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    EXPECT_EQ(box.text(), question.messageText);
    EXPECT_EQ(box.informativeText(), question.informativeText);
    EXPECT_EQ(box.defaultButton(), buttonOf(box, "Exit"));
    box.close();
  });
}

class FolderPanelTest : public testing::Test {
 protected:
  void open() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    window.show();
    panel.beginSheetModalForWindow([this](int result, const Path& chosen) {
      results.push_back(result);
      folders.push_back(chosen);
    });
    dialog = window.findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
  }
  bool isAnswered() {
    return eventually([this] { return !results.empty(); });
  }

  TemporaryFolder folder;
  QMainWindow window;
  WindowFolderPanel panel{window};
  QPointer<QFileDialog> dialog;
  std::vector<int> results;
  std::vector<Path> folders;
};

TEST_F(FolderPanelTest, IsASheetThatTakesFoldersOnly) {
  open();
  EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
  EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
  EXPECT_TRUE(results.empty());
  dialog->reject();
}

TEST_F(FolderPanelTest, GivesTheFolderThatTheUserNames) {
  open();
  auto* name = dialog->findChild<QLineEdit*>();
  // Not by single keys, each of which the dialog completes in its own time.
  name->setText(QString::fromStdString(folder.path().native()));
  QTest::keyClick(name, Qt::Key_Return);
  ASSERT_TRUE(isAnswered());
  EXPECT_THAT(results, ElementsAre(FolderPanel::okResponse));
  EXPECT_THAT(folders, ElementsAre(folder.path()));
}

TEST_F(FolderPanelTest, CancellingChoosesNothing) {
  open();
  QTest::keyClick(dialog.data(), Qt::Key_Escape);
  ASSERT_TRUE(isAnswered());
  EXPECT_THAT(results, ElementsAre(0));
}

QMimeData* listOf(const std::string& uris) {
  auto* data = new QMimeData;
  data->setData(QStringLiteral("text/uri-list"), QByteArray::fromStdString(uris));
  return data;
}

TEST(DroppedFolders, TakesFoldersByTheirBytes) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "\xff \n");
  const std::unique_ptr<QMimeData> data(listOf("file://" + folder.path().native() + "/%FF%20%0A/\r\nfile://" +
                                               folder.path().native() + "\r\n"));
  EXPECT_THAT(foldersIn(*data), ElementsAre(folder / "\xff \n", folder.path()));
}

TEST(DroppedFolders, SkipsFilesAndOtherPlaces) {
  const TemporaryFolder folder;
  const Path file = writeFile(folder / "a.jpg", "photo");
  const std::unique_ptr<QMimeData> data(
      listOf("file://" + file.native() + "\nhttps://example.org/\nfile:///no/such/folder\n\n"));
  EXPECT_THAT(foldersIn(*data), IsEmpty());
  EXPECT_THAT(foldersIn(QMimeData()), IsEmpty());
}

}  // namespace

}  // namespace kestrova::test
