#include "app/main_interface.h"
#include "support/counting_defaults.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

class StandInWorkspace : public Workspace {
 public:
  bool openUrl(const QString& address) override {
    opened << address;
    return works;
  }
  QStringList opened;
  bool works = true;
};

class AnsweringAlerts : public AlertPanel {
 public:
  int runModal(const Alert& alert) override {
    shown.push_back(alert);
    if (onRun) onRun();
    return answer;
  }
  std::function<void()> onRun;
  std::vector<Alert> shown;
  int answer = firstButtonReturn;
};

class Exit : public testing::Test {
 protected:
  Exit() {
    Host host;
    host.files = systemFileManager();
    host.defaults = defaults;
    host.workspace = workspace;
    host.alertPanel = alerts;
    host.terminate = [this] { ++terminations; };
    interface = std::make_unique<MainInterface>(std::move(host));
    test::HeadlessProgram::settle();
  }
  OrganiseManager& manager() { return interface->manager; }
  TerminateReply ask() { return interface->delegate.applicationShouldTerminate(nullptr); }
  void queueSomething(bool suspended) {
    manager().processQueue = std::make_shared<OperationQueue>();
    manager().processQueue->setSuspended(suspended);
    manager().processQueue->addOperation(std::make_shared<InvocationOperation>());
  }

  const test::LogCapture log;
  std::shared_ptr<StandInWorkspace> workspace = std::make_shared<StandInWorkspace>();
  std::shared_ptr<AnsweringAlerts> alerts = std::make_shared<AnsweringAlerts>();
  std::shared_ptr<test::CountingDefaults> defaults = std::make_shared<test::CountingDefaults>();
  int terminations = 0;
  std::unique_ptr<MainInterface> interface;
};

}  // namespace

TEST_F(Exit, AsksAndSavesBeforeItAsks) {
  int savesBefore = 0;
  alerts->onRun = [&] { savesBefore = defaults->saves; };
  EXPECT_EQ(ask(), TerminateReply::now);
  EXPECT_EQ(savesBefore, 1);
  ASSERT_EQ(alerts->shown.size(), 1U);
  EXPECT_EQ(alerts->shown[0].messageText, QStringLiteral("Alert"));
  EXPECT_EQ(alerts->shown[0].informativeText, QStringLiteral("Do you really want to exit?"));
  EXPECT_EQ(alerts->shown[0].buttons, QStringList({QStringLiteral("Exit"), QStringLiteral("Cancel")}));
  EXPECT_EQ(defaults->saves, 1);
}

TEST_F(Exit, CancelledKeepsTheSettingsSaved) {
  for (const int answer : {AlertPanel::firstButtonReturn + 1, 0, -1}) {
    alerts->answer = answer;
    EXPECT_EQ(ask(), TerminateReply::cancel);
  }
  EXPECT_EQ(defaults->saves, 3);
}

TEST_F(Exit, IsRefusedWhileOperationsAreQueuedEvenPaused) {
  queueSomething(true);
  EXPECT_EQ(ask(), TerminateReply::cancel);
  ASSERT_EQ(alerts->shown.size(), 1U);
  EXPECT_EQ(alerts->shown[0].messageText, QStringLiteral("Info"));
  EXPECT_EQ(alerts->shown[0].informativeText,
            QStringLiteral("Please wait until process is finished or stop it before exit."));
  EXPECT_EQ(alerts->shown[0].buttons, QStringList(QStringLiteral("OK")));
  EXPECT_EQ(defaults->saves, 0);
}

TEST_F(Exit, ByClosingTheWindowMeansQuittingAndNeverClosesTheWindowItself) {
  EXPECT_FALSE(manager().windowShouldClose());
  EXPECT_EQ(terminations, 1);
  manager().exitApp();
  EXPECT_EQ(terminations, 2);
}

TEST_F(Exit, IsNotWhatPerformCloseDoes) {
  manager().performClose();
  EXPECT_EQ(log.lines(), QStringList(QStringLiteral("Closed")));
  EXPECT_EQ(terminations, 0);
}

TEST_F(Exit, LinksOpenTheirAddresses) {
  manager().gotoHelp();
  manager().requestNewFeature();
  manager().gotoReviewPage();
  manager().shareFacebook();
  manager().shareTwitter();
  manager().shareGooglePlus();
  manager().sharePinterest();
  const QStringList& opened = workspace->opened;
  ASSERT_EQ(opened.size(), 7);
  EXPECT_TRUE(opened[0].endsWith(QStringLiteral("/help")));
  EXPECT_TRUE(opened[1].endsWith(QStringLiteral("/requestfeature.html#feature")));
  EXPECT_TRUE(opened[2].startsWith(QStringLiteral("macappstore://")));
  EXPECT_TRUE(opened[2].contains(QStringLiteral("addUserReview?id=")));
  EXPECT_TRUE(opened[2].endsWith(QStringLiteral("displayable-kind=30")));
  EXPECT_TRUE(opened[3].contains(QStringLiteral("/sharer/sharer.php?u=http")));
  EXPECT_TRUE(opened[4].contains(
      QStringLiteral("/share?hashtags=kestrova&text=This%20is%20all%20in%20one%20solution%20to%20organise%"
                     "20your%20photo%20and%20video%20folders%20:%20&url=http")));
  EXPECT_TRUE(opened[5].contains(QStringLiteral("/share?url=http")));
  EXPECT_TRUE(opened[6].contains(QStringLiteral("/pin/create/link/?url=http")));
  for (const QString& address : opened) EXPECT_FALSE(address.contains(u' '));
}

TEST_F(Exit, OnlyTheHelpPageSaysInTheLogThatItCannotBeOpened) {
  workspace->works = false;
  manager().gotoReviewPage();
  manager().requestNewFeature();
  manager().shareFacebook();
  manager().shareTwitter();
  manager().shareGooglePlus();
  manager().sharePinterest();
  EXPECT_EQ(workspace->opened.size(), 6);
  EXPECT_TRUE(log.lines().isEmpty());
  manager().gotoHelp();
  EXPECT_EQ(log.lines(), QStringList(QStringLiteral("Failed to open url: ") + workspace->opened.last()));
}

TEST_F(Exit, SavesWhenACheckBoxIsSelected) {
  manager().chkSelected();
  EXPECT_EQ(defaults->saves, 1);
}

}  // namespace kestrova
