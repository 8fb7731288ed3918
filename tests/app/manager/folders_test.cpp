#include "support/counting_defaults.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

/// Answers as the user would.
class AnsweringPanel : public FolderPanel {
 public:
  void beginSheetModalForWindow(Completion completion) override {
    if (answersLater)
      pending = std::move(completion);
    else
      completion(result, folder);
  }
  int result = okResponse;
  Path folder;
  bool answersLater = false;
  Completion pending;
};

class Folders : public testing::Test {
 protected:
  Folders() {
    Host host;
    host.files = systemFileManager();
    host.defaults = defaults;
    host.power = std::make_shared<test::FakePowerAssertions>();
    host.folderPanel = panel;
    interface = std::make_unique<MainInterface>(std::move(host));
    test::HeadlessProgram::settle();
  }
  void pickSource(const Path& folder) {
    panel->folder = folder;
    manager().chooseSourcePath();
  }
  OrganiseManager& manager() { return interface->manager; }
  std::vector<Path> sources() { return manager().sourcePathList.get(); }

  std::shared_ptr<AnsweringPanel> panel = std::make_shared<AnsweringPanel>();
  std::shared_ptr<test::CountingDefaults> defaults = std::make_shared<test::CountingDefaults>();
  std::unique_ptr<MainInterface> interface;
};

}  // namespace

TEST_F(Folders, ChosenTwiceStandInOneRowAndAreSavedBothTimes) {
  pickSource("/photos");
  pickSource("/photos");
  EXPECT_EQ(sources(), std::vector<Path>{"/photos"});
  EXPECT_EQ(defaults->saves, 2);
}

TEST_F(Folders, ThatDifferInCaseStandInTwoRows) {
  pickSource("/photos");
  pickSource("/Photos");
  EXPECT_EQ(manager().numberOfRowsInTableView(*interface->sourceList), 2U);
  EXPECT_EQ(manager().tableView(*interface->sourceList, 0, 1), QStringLiteral("/Photos"));
  EXPECT_EQ(manager().tableView(*interface->sourceList, 5, 0), QStringLiteral("/photos"));
}

TEST_F(Folders, InsideOneAnotherAreAcceptedAsTheyAre) {
  pickSource("/photos");
  pickSource("/photos/2014");
  EXPECT_EQ(sources().size(), 2U);
}

TEST_F(Folders, AreRememberedAsLastPickedEvenWhenListedAlready) {
  pickSource("/a");
  pickSource("/b");
  pickSource("/a");
  EXPECT_EQ(manager().sourcePath, Path("/a"));
  EXPECT_EQ(sources(), (std::vector<Path>{"/a", "/b"}));
}

TEST_F(Folders, SelectedInRows0And2AreDeletedAtOnce) {
  for (const char* folder : {"/a", "/b", "/c"}) pickSource(folder);
  interface->sourceList->selectRowIndexes({0, 2});
  manager().deleteSource();
  EXPECT_EQ(sources(), std::vector<Path>{"/b"});
  EXPECT_EQ(defaults->saves, 4) << "after each choice and once after both are gone";
  EXPECT_TRUE(interface->sourceList->selectedRowIndexes().empty());
}

TEST_F(Folders, StayWhenNothingIsSelected) {
  pickSource("/a");
  manager().deleteSource();
  EXPECT_EQ(sources().size(), 1U);
  EXPECT_EQ(defaults->saves, 2);
}

TEST_F(Folders, ShowTheTargetInItsLabel) {
  panel->folder = "/target";
  manager().chooseTargetPath();
  EXPECT_EQ(manager().targetPath.get(), Path("/target"));
  EXPECT_EQ(interface->lblTargetPath->stringValue(), QStringLiteral("/target"));
  EXPECT_EQ(defaults->saves, 1);
}

TEST_F(Folders, KeepTheOldTargetWhenThePanelIsCancelled) {
  panel->folder = "/target";
  manager().chooseTargetPath();
  panel->result = 0;
  panel->folder = "/other";
  manager().chooseTargetPath();
  EXPECT_EQ(manager().targetPath.get(), Path("/target"));
  EXPECT_EQ(interface->lblTargetPath->stringValue(), QStringLiteral("/target"));
  pickSource("/source");
  EXPECT_TRUE(sources().empty());
  EXPECT_EQ(defaults->saves, 1);
}

TEST_F(Folders, AnsweredAfterTheProgramHasGoneAreIgnored) {
  panel->answersLater = true;
  manager().chooseSourcePath();
  interface.reset();
  EXPECT_NO_THROW(panel->pending(FolderPanel::okResponse, "/late"));
}

}  // namespace kestrova
