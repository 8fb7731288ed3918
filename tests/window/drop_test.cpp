#include "window/source_list.h"
#include "window_fixture.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

#include <gmock/gmock.h>

namespace kestrova::test {

namespace {

using testing::ElementsAre;

class ADrop : public WindowTest {
 protected:
  /// Enters the window there.
  void drag(const Path& path, QPoint place) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.native()))});
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &enter);
    isTaken = enter.isAccepted();
    if (!isTaken) return;
    QDragMoveEvent moved(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &moved);
  }
  DropHighlight& highlight() { return *window->findChild<DropHighlight*>(); }
  void drop(const Path& path, QPoint place) {
    drag(path, place);
    if (!isTaken) return;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.native()))});
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &drop);
  }
  QPoint middleOf(const char* name) {
    auto& place = widget<QWidget>(name);
    return place.mapTo(window.get(), place.rect().center());
  }
  /// The widget that would get a drop there.
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
  EXPECT_EQ(widget<SourceList>("sourceList").count(), 1);
}

TEST_F(ADrop, OnTheSecondStepSetsTheTarget) {
  open();
  drop(folder.path(), middleOf("targetStep"));
  EXPECT_EQ(controls().manager.targetPath.get(), folder.path());
  EXPECT_EQ(widget<SourceList>("sourceList").count(), 0);
}

TEST_F(ADrop, IsAnnouncedWhereItWouldLand) {
  open();
  EXPECT_FALSE(highlight().isVisible());
  drag(folder.path(), middleOf("sourceList"));
  EXPECT_TRUE(highlight().isVisible());
  EXPECT_EQ(highlight().promise(), QStringLiteral("Add to the source folders"));
  EXPECT_TRUE(highlight().geometry().contains(middleOf("sourceList")));
  drag(folder.path(), middleOf("targetStep"));
  EXPECT_EQ(highlight().promise(), QStringLiteral("Make this the target folder"));
  EXPECT_TRUE(highlight().geometry().contains(middleOf("targetStep")));
  EXPECT_FALSE(highlight().geometry().contains(middleOf("sourceList")));
  EXPECT_EQ(receiverAt(middleOf("targetStep")), window.get()) << "the highlight is not in the way";
  QDragLeaveEvent leave;
  QApplication::sendEvent(window.get(), &leave);
  EXPECT_FALSE(highlight().isVisible());
}

TEST_F(ADrop, IsNoLongerAnnouncedOnceItIsDone) {
  open();
  drop(folder.path(), middleOf("sourceList"));
  EXPECT_FALSE(highlight().isVisible());
}

TEST_F(ADrop, OfAFileIsRefused) {
  open();
  drop(writeFile(folder / "a.jpg", "photo"), middleOf("sourceList"));
  EXPECT_FALSE(isTaken);
}

/// A program that offers a folder to be dragged out of its window.
class ADragFromElsewhere : public ADrop {
 protected:
  /// Drags the folder to that place with the mouse, and returns what the program should do with its own copy.
  Qt::DropAction dragTo(QPoint place, Qt::DropActions offered, Qt::DropAction proposed) {
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path().native()))});
    QWidget elsewhere;
    elsewhere.setGeometry(window->frameGeometry().right() + 10, 0, 50, 50);
    elsewhere.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&elsewhere));
    auto* drag = new QDrag(&elsewhere);
    drag->setMimeData(data);
    steps_ = {[this, place] { moveTo(place - QPoint(5, 5)); }, [this, place] { moveTo(place); },
              [this, place] { QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, place); }};
    QTimer next;
    next.callOnTimeout([this] {
      if (steps_.empty()) return QDrag::cancel();
      steps_.front()();
      steps_.erase(steps_.begin());
    });
    next.start(200);
    return drag->exec(offered, proposed);
  }

 private:
  void moveTo(QPoint place) { QTest::mouseMove(window->windowHandle(), place); }
  std::vector<std::function<void()>> steps_;
};

TEST_F(ADragFromElsewhere, IsAnsweredWithACopyAlsoWhenAMoveIsProposed) {
  open();
  for (const auto proposed : {Qt::MoveAction, Qt::CopyAction, Qt::LinkAction}) {
    EXPECT_EQ(dragTo(middleOf("sourceList"), Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, proposed),
              Qt::CopyAction)
        << proposed;
  }
  EXPECT_THAT(controls().manager.sourcePathList.get(), ElementsAre(folder.path()));
}

TEST_F(ADragFromElsewhere, IsRefusedWhereOnlyAMoveIsOffered) {
  open();
  EXPECT_EQ(dragTo(middleOf("sourceList"), Qt::MoveAction, Qt::MoveAction), Qt::IgnoreAction);
  EXPECT_TRUE(controls().manager.sourcePathList.get().empty());
}

}  // namespace

}  // namespace kestrova::test
