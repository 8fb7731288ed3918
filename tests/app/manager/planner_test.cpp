#include "app/manager/planner_fixture.h"
#include "planning/calendar.h"
#include "platform/file_url.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::nameOf;
using test::writeFile;

class Planner : public test::PlannerTest {};

}  // namespace

TEST_F(Planner, DatesAPhotoByItsDigitisingTimeWhateverItsModificationDate) {
  const Path photo = writeJpeg("a.jpg", {.digitized = "2014:05:21 13:45:02"});
  test::setModified(photo, "2020:01:01 00:00:00");
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector{nameOf(photo, "2014/05/21/PHOTO_20140521134502_", ".JPG")});
}

TEST_F(Planner, DatesAPhotoThatTellsOnlyWhenItWasTakenByItsModificationDate) {
  const Path photo = writeJpeg("a.jpg", {.digitized = "", .taken = "2014:05:21 13:45:02"});
  test::setModified(photo, "2020:02:03 04:05:06");
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector{nameOf(photo, "2020/02/03/PHOTO_20200203040506_", ".JPG")});
}

TEST_F(Planner, DatesAPhotoWithAnUnreadableDateByItsModificationDate) {
  const Path photo = writeJpeg("a.jpg", {.digitized = "0000:00:00 00:00:00"});
  test::setModified(photo, "2020:02:03 04:05:06");
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector{nameOf(photo, "2020/02/03/PHOTO_20200203040506_", ".JPG")});
}

TEST_F(Planner, DatesAVideoByItsModificationDate) {
  writeVideo("clip.MoV", 500);
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector<std::string>{"2015/01/01/VIDEO_20150101000000_500.MOV"});
}

TEST_F(Planner, NamesTheFolderByTheChosenFormat) {
  writeVideo("clip.mov", 500);
  controls().comboFolderFormat->chooseItem(0);
  program.run();
  EXPECT_EQ(program.targetFiles(),
            std::vector<std::string>{"2015/01/01-January-2015 Thursday/VIDEO_20150101000000_500.MOV"});
}

TEST_F(Planner, DatesAFileWithoutAnyDateByTheStartOfTheRun) {
  const Path clip = writeVideo("clip.mov", 500);
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path == clip) return FileError{EACCES, "refused"};
    return std::nullopt;
  };
  program.run();
  const DateParts today = splitDate(manager().starttime.value());
  const std::string expected = targetFileName(MediaKind::video, today, 0, "mov");
  ASSERT_EQ(program.targetFiles().size(), 1U);
  EXPECT_TRUE(program.targetFiles()[0].ends_with(expected)) << program.targetFiles()[0];
}

TEST_F(Planner, TakesTheStartOfTheRunAndNoLaterMomentWhereThereIsNoDate) {
  const Path clip = writeVideo("clip.mov", 500);
  std::atomic<bool> isPlanning = false;
  program.clock = [&] {
    return parseLocalTime(isPlanning ? "2002:02:02 02:02:02" : "2001:01:01 01:01:01").value();
  };
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path != clip) return std::nullopt;
    isPlanning = true;
    return FileError{EACCES, "refused"};
  };
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector<std::string>{"2001/01/01/VIDEO_20010101010101_0.MOV"});
}

TEST_F(Planner, KnowsNothingOfAPhotoThatLiesAfterItsFirst40960Bytes) {
  const Bytes photo =
      test::jpegPhoto({.width = 300, .height = 300, .orientation = 6, .digitized = "2014:05:21 13:45:02"});
  const Bytes start(photo.begin(), photo.begin() + 2);
  const Bytes rest(photo.begin() + 2, photo.end());
  constexpr std::uint8_t comment = 0xFE;
  const Bytes late = test::joined({start, test::jpegSegment(comment, Bytes(40960, ' ')), rest});
  const Path path = writeFile(program.source / "late.jpg", ByteView(late));
  test::setModified(path, "2020:02:03 04:05:06");
  controls().chkFilterSmallPhotos->performClick();
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector{nameOf(path, "2020/02/03/PHOTO_20200203040506_", ".JPG")});
  EXPECT_EQ(manager().tFilteredCount, 0);
  EXPECT_EQ(manager().tRotatedCount, 0);
}

TEST_F(Planner, NamesAFileThatIsNeitherPhotoNorVideoWithoutAnUnderscore) {
  // The joined lists contain a bracket between two commas.
  const Path odd = test::writePhoto(program.source / "odd.)", 1000);
  test::setModified(odd, "2015:01:01 00:00:00");
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector<std::string>{"2015/01/01/FILE20150101000000_1000.)"});
}

TEST_F(Planner, LeavesOutNothingForFiltersThatAreNeitherOnNorOff) {
  writeJpeg("a.jpg", {.width = 90, .height = 60});
  writeVideo("clip.mov", 500);
  controls().chkFilterSmallPhotos->setState(CheckBox::mixed);
  controls().chkFilterSmallVideos->setState(CheckBox::mixed);
  program.run();
  EXPECT_EQ(manager().tFilteredCount, 0);
  EXPECT_EQ(manager().tPhotoCount, 1);
  EXPECT_EQ(manager().tVideoCount, 1);
}

TEST_F(Planner, LeavesOutSmallPhotosByTheirBytesWhenAsked) {
  // Cut off: only the bytes that planning reads have to be there.
  Bytes photo = test::jpegPhoto({.digitized = "2014:05:21 13:45:02"});
  photo.resize(20000);
  writeFile(program.source / "enough.jpg", ByteView(photo));
  photo.resize(19999);
  writeFile(program.source / "small.jpg", ByteView(photo));
  controls().chkFilterSmallPhotos->performClick();
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector<std::string>{"2014/05/21/PHOTO_20140521134502_20000.JPG"});
  EXPECT_EQ(manager().tFilteredCount, 1);
  EXPECT_EQ(manager().tFilteredSize, 19999);
}

TEST_F(Planner, LeavesOutSmallVideosByTheirBytesWhenAsked) {
  writeVideo("small.mov", 1999999);
  writeVideo("enough.mov", 2000000);
  controls().chkFilterSmallVideos->performClick();
  program.run();
  EXPECT_EQ(program.targetFiles(), std::vector<std::string>{"2015/01/01/VIDEO_20150101000000_2000000.MOV"});
  EXPECT_EQ(manager().tFilteredCount, 1);
}

TEST_F(Planner, LeavesOutPhotosWithAShortSideOnceEachWhenAsked) {
  writeJpeg("low.jpg", {.width = 4000, .height = 399}, 200000);
  writeJpeg("both.jpg", {.width = 390, .height = 399}, 200001);
  writeJpeg("square.jpg", {.width = 400, .height = 400}, 200002);
  controls().chkFilterSmallPhotos->performClick();
  program.run();
  EXPECT_EQ(manager().tFilteredCount, 2);
  EXPECT_EQ(manager().tPhotoCount, 1);
}

TEST_F(Planner, TakesShortSidesWhenItIsNotAskedToLeaveThemOut) {
  writeJpeg("low.jpg", {.width = 600, .height = 20});
  program.run();
  EXPECT_EQ(manager().tFilteredCount, 0);
  EXPECT_EQ(manager().tPhotoCount, 1);
}

TEST_F(Planner, LogsEveryFileThatPassedTheSizeFiltersAndThePixelsOfPhotos) {
  const Path photo = writeJpeg("a.jpg", {.width = 640, .height = 480});
  const Path clip = writeVideo("clip.mov", 500);
  program.run();
  EXPECT_TRUE(program.log.holds(QStringLiteral("IMAGE  ") + QString::fromStdString(photo.native())));
  EXPECT_TRUE(program.log.holds(QStringLiteral("IMAGE  ") + QString::fromStdString(clip.native())));
  EXPECT_TRUE(program.log.holds(QStringLiteral("Pixel Width : 640  Pixel Height : 480")));
}

TEST_F(Planner, SkipsAFileWhoseTargetIsThereWhateverItHolds) {
  writeVideo("clip.mov", 500);
  writeFile(program.target / "2015/01/01/VIDEO_20150101000000_500.MOV", "something else");
  program.run();
  EXPECT_EQ(manager().tAlreadyCount, 1);
  EXPECT_EQ(manager().tAlreadySize, 500);
  EXPECT_EQ(manager().tTotalCount, 0);
  EXPECT_EQ(test::readFile(program.target / "2015/01/01/VIDEO_20150101000000_500.MOV"), "something else");
}

TEST_F(Planner, SkipsAFileWhoseTargetIsAFolder) {
  writeVideo("clip.mov", 500);
  std::filesystem::create_directories(program.target / "2015/01/01/VIDEO_20150101000000_500.MOV");
  program.run();
  EXPECT_EQ(manager().tAlreadyCount, 1);
}

TEST_F(Planner, QueuesBothOfTwoFilesWithOneTargetAndTheSecondFailsAsExisting) {
  test::setModified(test::writePhoto(program.source / "a.mov", 500, 'a'), "2015:01:01 00:00:00");
  test::setModified(test::writePhoto(program.source / "b.mov", 500, 'b'), "2015:01:01 00:00:00");
  program.run();
  EXPECT_EQ(manager().tVideoCount, 1);
  EXPECT_EQ(manager().targetExistCount, 1);
  EXPECT_EQ(controls().lblTargetExistCount->stringValue(), QStringLiteral("1"));
  EXPECT_EQ(program.log.count(QStringLiteral("Item Exist")), 1);
  EXPECT_EQ(test::readFile(program.target / "2015/01/01/VIDEO_20150101000000_500.MOV")[0], 'a');
}

TEST_F(Planner, EndsProperlyWhenEveryFileIsLeftOutOrThere) {
  writeVideo("clip.mov", 500);
  writeVideo("there.mov", 2500000);
  writeFile(program.target / "2015/01/01/VIDEO_20150101000000_2500000.MOV", "x");
  controls().chkFilterSmallVideos->performClick();
  program.run();
  EXPECT_EQ(controls().processBar->maxValue(), 2);
  EXPECT_EQ(controls().processBar->doubleValue(), 2);
  EXPECT_FALSE(controls().processBar->isIndeterminate());
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
  EXPECT_FALSE(manager().processQueue->isSuspended());
  EXPECT_TRUE(controls().buttonStart->isEnabled());
}

TEST_F(Planner, ShowsNoProgressOfTheLastRunWhenItEnds) {
  writeVideo("clip.mov", 500);
  controls().processBar->setDoubleValue(42);
  files->onStageCopy = [](const Path&, const Path&) { return FileError{EACCES, "on purpose"}; };
  program.run();
  EXPECT_EQ(controls().processBar->maxValue(), 1);
  EXPECT_EQ(controls().processBar->doubleValue(), 0);
}

TEST_F(Planner, ExaminesAFileAgainWhenTheFilterHasChangedSinceItWasExaminedAhead) {
  writeVideo("a.mov", 500);
  writeVideo("b.jpg", 15000);
  test::HeadlessProgram several{files, volatileUserDefaults(), 4};
  several.interface->comboFolderFormat->chooseItem(2);
  several.interface->chkFilterSmallPhotos->performClick();
  several.chooseFolders();
  several.manager().addSource(program.source);
  test::Gate beforeTheFirstTarget;
  files->onAttributes = [&](const Path& path) -> std::optional<FileError> {
    if (path.extension() == ".MOV") beforeTheFirstTarget.pass();
    return std::nullopt;
  };
  several.press(several.interface->buttonStart);
  several.waitUntil([&] { return beforeTheFirstTarget.isReached(); });
  several.interface->chkFilterSmallPhotos->performClick();
  beforeTheFirstTarget.open();
  several.waitUntilEnded();
  EXPECT_TRUE(std::filesystem::exists(several.target / "2015/01/01/PHOTO_20150101000000_15000.JPG"));
}

TEST_F(Planner, NumbersTheFilesThatItDecidesOn) {
  writeVideo("a.mov", 500);
  writeVideo("b.mov", 501);
  files->onAttributes = [](const Path& path) -> std::optional<FileError> {
    if (path.extension() == ".mov") test::letTheMainThreadCatchUp();
    return std::nullopt;
  };
  program.run();
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Deciding operations 1")));
  EXPECT_TRUE(program.statusTexts().contains(QStringLiteral("Deciding operations 2")));
}

TEST_F(Planner, AnnouncesWhatItLeavesOutAndWhatIsThere) {
  writeVideo("small.mov", 500);
  writeVideo("there.mov", 2500000);
  writeFile(program.target / "2015/01/01/VIDEO_20150101000000_2500000.MOV", "x");
  controls().chkFilterSmallVideos->performClick();
  std::vector<Verdict::Outcome> seen;
  manager().verdictListener = [&](const Verdict& verdict) { seen.push_back(verdict.outcome); };
  program.run();
  EXPECT_EQ(seen, (std::vector{Verdict::Outcome::small, Verdict::Outcome::exists}));
}

TEST_F(Planner, OpensNoVideoToReadItsProperties) {
  writeVideo("clip.mov", 500);
  std::atomic<int> reads = 0;
  files->onRead = [&](const Path&) -> std::optional<FileError> {
    ++reads;
    return std::nullopt;
  };
  program.run();
  EXPECT_EQ(reads, 0);
}

TEST_F(Planner, HasNoModificationDateForWhatIsNotAFileUrl) {
  const Path file = writeVideo("clip.mov", 500);
  EXPECT_FALSE(manager().getModifiedDate("").has_value());
  EXPECT_FALSE(manager().getModifiedDate("file://%zz").has_value());
  EXPECT_FALSE(manager().getModifiedDate("http://example.com/a").has_value());
  EXPECT_FALSE(manager().getModifiedDate(fileUrlString(program.source / "missing")).has_value());
  EXPECT_EQ(manager().getModifiedDate(fileUrlString(file)), parseLocalTime("2015:01:01 00:00:00"));
}

}  // namespace kestrova
