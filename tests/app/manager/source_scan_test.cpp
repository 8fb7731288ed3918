#include "support/headless_program.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

using test::writeFile;
using test::writePhoto;

class SourceScan : public testing::Test {
 protected:
  /// A whole run, of which the tests check the results of the scan.
  void scan() { program.run(); }
  OrganiseManager& manager() { return program.manager(); }
  qsizetype logged(const char* start) { return program.log.count(QLatin1String(start)); }
  QString text(const Path& path) { return QString::fromStdString(path.native()); }
  std::vector<std::string> keys() {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < manager().fileList.size(); ++i) all.push_back(manager().fileList[i].key());
    return all;
  }
  test::HeadlessProgram program;
};

}  // namespace

TEST_F(SourceScan, TakesTheSecondOfTwoCopiesInTwoFoldersAsADuplicate) {
  const Path first = writePhoto(program.source / "a.jpg", 1000);
  const Path second = writePhoto(program.folder / "second" / "b.jpg", 1000);
  manager().addSource(program.source);
  manager().addSource(program.folder / "second");
  scan();
  EXPECT_TRUE(program.log.holds(QStringLiteral("NEW : %1 : 1000").arg(text(first))));
  EXPECT_TRUE(program.log.holds(
      QStringLiteral("DUPLICATE -----> %1 : cabe45dcc9ae5b66ba86600cca6b8ba8 : 1000").arg(text(second))));
  EXPECT_EQ(manager().sDuplicateCount, 1);
  EXPECT_EQ(manager().sDuplicateSize, 1000);
  EXPECT_EQ(keys(), std::vector<std::string>{"1000"});
  ASSERT_EQ(manager().duplicateList.size(), 1U);
  EXPECT_EQ(manager().duplicateList[0], second.native());
}

TEST_F(SourceScan, KeepsTwoDifferentPhotosOfOneSize) {
  writePhoto(program.source / "a.jpg", 1000, 'a');
  const Path second = writePhoto(program.source / "b.jpg", 1000, 'b');
  scan();
  EXPECT_TRUE(program.log.holds(QStringLiteral("SAME FILE SIZE : %1 : 1000").arg(text(second))));
  ASSERT_EQ(manager().fileList.size(), 2U);
  EXPECT_EQ(keys().at(1), manager().hashData(manager().read10KFromFile(second)) + "1000");
  EXPECT_EQ(manager().sPhotoCount, 2);
}

TEST_F(SourceScan, DropsAFileThatEqualsALaterOneOfItsSizeWithoutAWord) {
  writePhoto(program.source / "a.jpg", 1000, 'a');
  writePhoto(program.source / "b.jpg", 1000, 'b');
  const Path third = writePhoto(program.source / "c.jpg", 1000, 'b');
  scan();
  EXPECT_EQ(manager().sPhotoCount, 2);
  EXPECT_EQ(manager().sDuplicateCount, 0);
  EXPECT_TRUE(manager().duplicateList.empty());
  for (const auto& line : program.log.lines()) EXPECT_FALSE(line.contains(text(third))) << line.toStdString();
}

TEST_F(SourceScan, AnnouncesWhatEachDuplicateEquals) {
  const Path first = writePhoto(program.source / "a.jpg", 1000, 'a');
  const Path other = writePhoto(program.source / "b.jpg", 1000, 'b');
  writePhoto(program.source / "c.jpg", 1000, 'b');
  writePhoto(program.source / "d.jpg", 1000, 'a');
  std::vector<std::pair<Verdict::Outcome, Path>> seen;
  manager().verdictListener = [&](const Verdict& verdict) {
    if (verdict.original) seen.emplace_back(verdict.outcome, *verdict.original);
  };
  scan();
  const std::vector<std::pair<Verdict::Outcome, Path>> expected{{Verdict::Outcome::sameContent, other},
                                                                {Verdict::Outcome::duplicate, first}};
  EXPECT_EQ(seen, expected);
}

TEST_F(SourceScan, TakesAnExtensionInCapitals) {
  writePhoto(program.source / "IMG_1.JPG", 1000);
  scan();
  EXPECT_EQ(manager().sPhotoCount, 1);
}

TEST_F(SourceScan, DoesNotCountVideosWhenOnlyPhotosAreTaken) {
  writePhoto(program.source / "a.jpg", 1000);
  writePhoto(program.source / "b.mov", 2000);
  program.interface->comboCopy->chooseItem(1);
  scan();
  EXPECT_EQ(manager().sPhotoCount, 1);
  EXPECT_EQ(manager().sVideoCount, 0);
}

TEST_F(SourceScan, DoesNotCountPhotosWhenOnlyVideosAreTaken) {
  writePhoto(program.source / "a.jpg", 1000);
  writePhoto(program.source / "b.mov", 2000);
  program.interface->comboCopy->chooseItem(2);
  scan();
  EXPECT_EQ(manager().sPhotoCount, 0);
  EXPECT_EQ(manager().sVideoCount, 1);
}

TEST_F(SourceScan, PassesOnlyJpgWhenNothingIsSelected) {
  for (const char* name : {"a.jpg", "b.avi", "c.mov", "d.jpeg"})
    writePhoto(program.source / name, 1000 + std::strlen(name), name[0]);
  program.interface->comboCopy->selectItemAtIndex(-1);
  scan();
  ASSERT_EQ(manager().fileList.size(), 1U);
  EXPECT_EQ(manager().fileList[0].path, (program.source / "a.jpg").native());
}

TEST_F(SourceScan, TakesABracketAsAnExtensionBecauseTheJoinedListsHoldOneBetweenCommas) {
  writePhoto(program.source / "odd.)", 1000);
  scan();
  EXPECT_EQ(manager().fileList.size(), 1U);
  EXPECT_EQ(manager().sTotalCount, 0);
  EXPECT_EQ(program.targetFiles().size(), 1U);
}

TEST_F(SourceScan, SeesEachFileOfANestedSourceTwice) {
  writePhoto(program.source / "inner" / "a.jpg", 1000);
  manager().addSource(program.source);
  manager().addSource(program.source / "inner");
  scan();
  EXPECT_EQ(manager().sPhotoCount, 1);
  EXPECT_EQ(manager().sDuplicateCount, 1);
}

TEST_F(SourceScan, SeesEachFileOfASourceThatIsListedTwiceTwice) {
  writePhoto(program.source / "a.jpg", 1000);
  writePhoto(program.source / "b.jpg", 2000);
  manager().sourcePathList = std::vector<Path>{program.source, program.source};
  scan();
  EXPECT_EQ(manager().sPhotoCount, 2);
  EXPECT_EQ(manager().sDuplicateCount, 2);
}

TEST_F(SourceScan, SaysThatItAnalysesFoldersOnceForEachSource) {
  manager().addSource(program.source);
  manager().addSource(program.folder / "second");
  scan();
  EXPECT_EQ(program.statusTexts().count(QStringLiteral("Analyzing source folders")), 2);
}

TEST_F(SourceScan, TakesAllButTheFirstOfSeveralEmptyFilesAsDuplicates) {
  for (const char* name : {"a.jpg", "b.jpg", "c.mov"}) writeFile(program.source / name, "");
  scan();
  EXPECT_EQ(keys(), std::vector<std::string>{"0"});
  EXPECT_EQ(manager().sDuplicateCount, 2);
}

TEST_F(SourceScan, TakesLargeFilesThatDifferOnlyAfterTheirFirst40960BytesAsDuplicates) {
  std::string contents(60000, 'x');
  writeFile(program.source / "a.mov", contents);
  contents.back() = 'y';
  writeFile(program.source / "b.mov", contents);
  scan();
  EXPECT_EQ(manager().sDuplicateCount, 1);
}

TEST_F(SourceScan, SkipsFilesWithoutExtensionAndFolders) {
  writePhoto(program.source / "jpg", 1000);
  std::filesystem::create_directories(program.source / "folder.jpg");
  scan();
  EXPECT_TRUE(manager().fileList.empty());
}

TEST_F(SourceScan, TakesHiddenFilesAndEntersHiddenFoldersAndPackages) {
  writePhoto(program.source / ".hidden" / ".a.jpg", 1000);
  writePhoto(program.source / "Library.photoslibrary" / "b.jpg", 2000);
  scan();
  EXPECT_EQ(manager().fileList.size(), 2U);
}

TEST_F(SourceScan, EndsOnHostileTreesWithWhatTheyHoldOfPhotos) {
  const Path& source = program.source;
  writePhoto(source / "bytes\xff\xfe.jpg", 1000);
  writePhoto(source / "line\nend.jpg", 1001);
  writePhoto(source / (std::string(251, 'n').append(".jpg")), 1002);
  const Path real = writePhoto(program.folder / "elsewhere" / "real.jpg", 1003);
  std::filesystem::create_symlink(real, source / "link.jpg");
  std::filesystem::create_symlink(source / "missing.jpg", source / "dangling.jpg");
  std::filesystem::create_directory_symlink(source, source / "loop");
  std::filesystem::create_symlink("self.jpg", source / "self.jpg");
  ASSERT_EQ(mkfifo((source / "fifo.jpg").c_str(), 0600), 0);
  scan();
  EXPECT_EQ(manager().sPhotoCount, 4);
  EXPECT_EQ(program.targetFiles().size(), 4U);
}

TEST_F(SourceScan, TakesFilesFromBelowAThousandFolders) {
  Path deep = program.source;
  for (int i = 0; i < 1000; ++i) deep /= "d";
  writePhoto(deep / "a.jpg", 1000);
  scan();
  EXPECT_EQ(manager().sPhotoCount, 1);
  EXPECT_EQ(program.targetFiles().size(), 1U);
}

TEST_F(SourceScan, FindsNothingInASourceThatHasGone) {
  writePhoto(program.source / "a.jpg", 1000);
  manager().addSource(program.folder / "gone");
  scan();
  EXPECT_EQ(manager().sPhotoCount, 1);
}

TEST_F(SourceScan, ShowsItsProgressInTheOtherBar) {
  auto& controls = *program.interface;
  bool moved = false;
  controls.sourceProgress->didChange = [&] {
    moved |= !controls.sourceProgress->isHidden() && controls.sourceProgress->isIndeterminate() &&
             controls.sourceProgress->isAnimating() && controls.processBar->isHidden();
  };
  scan();
  EXPECT_TRUE(moved);
  EXPECT_TRUE(controls.sourceProgress->isHidden());
  EXPECT_FALSE(controls.sourceProgress->isAnimating());
  EXPECT_FALSE(controls.processBar->isHidden());
  EXPECT_EQ(program.statusTexts(),
            QStringList({QStringLiteral("Process started!"), QStringLiteral("Analyzing source folders")}));
}

TEST_F(SourceScan, KeepsTheDisplayAwakeForItsReason) {
  scan();
  EXPECT_EQ(program.power->reasons(), std::vector<QString>{QStringLiteral("Kestrova Process")});
  EXPECT_EQ(manager().assertionID, 101U);
}

TEST_F(SourceScan, EndsWithoutPlanningWhenItIsStopped) {
  writePhoto(program.source / "a.jpg", 1000, 'a');
  writePhoto(program.source / "b.jpg", 1000, 'b');
  program.chooseFolders();
  const auto operation = std::make_shared<InvocationOperation>();
  operation->init(&manager(), &OrganiseManager::analyseSourceOperation);
  operation->cancel();
  manager().processQueue = std::make_shared<OperationQueue>();
  manager().analyseSourceOperation(*operation);
  program.settle();
  EXPECT_TRUE(program.log.holds(QStringLiteral("CANCELLLED")));
  EXPECT_EQ(program.status(), QStringLiteral("Stopped"));
  EXPECT_EQ(program.power->released(), std::vector<std::uint32_t>{101});
  EXPECT_EQ(manager().processQueue->operationCount(), 0U);
}

TEST_F(SourceScan, EndsWithoutPlanningWhenTheQueueIsSuspended) {
  writePhoto(program.source / "a.jpg", 1000);
  program.chooseFolders();
  manager().processQueue = std::make_shared<OperationQueue>();
  manager().processQueue->setSuspended(true);
  const auto operation = std::make_shared<InvocationOperation>();
  manager().analyseSourceOperation(*operation);
  program.settle();
  EXPECT_TRUE(program.log.holds(QStringLiteral("SUSPENDED")));
  EXPECT_EQ(program.status(), QStringLiteral("Analyzing source folders"));
  EXPECT_TRUE(program.power->released().empty());
  EXPECT_EQ(manager().processQueue->operationCount(), 0U);
}

}  // namespace kestrova
