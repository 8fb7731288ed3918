#include "planning/plan_file.h"

#include "planning/calendar.h"
#include "support/failing_file_manager.h"
#include "support/headless_program.h"
#include "support/sample_media.h"
#include "support/time_zone.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using test::SamplePhoto;
using test::writeFile;

constexpr const char* newYear = "2015:01:01 00:00:00";
constexpr const char* mayDay = "2014:05:01 13:45:02";
const FileError inputError{EIO, "on purpose"};

/// Plans files of one folder for a target next to it, in the short folder format.
class PlanFile : public testing::Test {
 protected:
  PlanFile() { options.folderFormat = FolderFormat::shortName; }

  Path video(std::size_t size) {
    const Path path = test::writePhoto(root / "in/a.mov", size);
    test::setModified(path, newYear);
    return path;
  }
  Path photo(const SamplePhoto& sample) {
    const Path path = writeFile(root / "in/a.jpg", ByteView(test::jpegPhoto(sample)));
    test::setModified(path, newYear);
    return path;
  }
  tl::expected<PlanEntry, Verdict> plan(const Path& file) {
    const PlanningContext context{.options = options,
                                  .photos = photos,
                                  .videos = videos,
                                  .months = months,
                                  .days = days,
                                  .target = target,
                                  .runStart = parseLocalTime(mayDay).value()};
    return planFile(file, examineFile(file, readingOptions(context), files), context, files);
  }
  /// Fails a call for this file only.
  static auto failingFor(const Path& file) {
    return [file](const Path& path) { return path == file ? std::optional(inputError) : std::nullopt; };
  }
  static DateParts partsOf(const char* localTime) { return splitDate(parseLocalTime(localTime).value()); }

  const test::TimeZone zone{"Europe/Berlin"};
  const test::TemporaryFolder root;
  std::optional<Path> target = root / "out";
  PlanningOptions options;
  const ExtensionList photos = QStringLiteral("(,jpg,)");
  const ExtensionList videos = QStringLiteral("(,mov,)");
  const NameTable months = englishMonths();
  const NameTable days = englishDays();
  test::FailingFileManager files;
};

}  // namespace

TEST_F(PlanFile, NamesAVideoByItsModificationTimeAndTellsWhatItIs) {
  const Path file = video(500);
  const auto entry = plan(file);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->handler, PlanEntry::Handler::copy);
  EXPECT_EQ(entry->from, file);
  EXPECT_EQ(entry->to, root / "out/2015/01/01/VIDEO_20150101000000_500.MOV");
  EXPECT_EQ(entry->planned.size, 500U);
  EXPECT_EQ(entry->planned.modified, parseLocalTime(newYear));
  EXPECT_EQ(entry->planned.date, (NamingDate{partsOf(newYear), DateOrigin::modified}));
  EXPECT_EQ(entry->planned.readError, "");
}

TEST_F(PlanFile, NamesAPhotoByItsDigitisingTime) {
  const auto entry = plan(photo({.orientation = 6, .digitized = mayDay}));
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->planned.date, (NamingDate{partsOf(mayDay), DateOrigin::digitised}));
  EXPECT_EQ(entry->orientation, 6);
  EXPECT_EQ(entry->to->parent_path(), root / "out/2014/05/01");
}

TEST_F(PlanFile, NamesAPhotoOfTheYear1ByThatYear) {
  const auto entry = plan(photo({.digitized = "0001:01:01 00:00:00"}));
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->to->parent_path(), root / "out/0001/01/01");
}

TEST_F(PlanFile, TakesAFileWithoutAttributesAsOneOfSize0FromTheStartOfTheRun) {
  const Path file = video(500);
  files.onAttributes = failingFor(file);
  const auto entry = plan(file);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->to, root / "out/2014/05/01/VIDEO_20140501134502_0.MOV");
  EXPECT_EQ(entry->planned.date, (NamingDate{partsOf(mayDay), DateOrigin::runStart}));
  EXPECT_EQ(entry->planned.modified, std::nullopt);
  EXPECT_EQ(entry->planned.readError, "on purpose");
}

TEST_F(PlanFile, AsksForTheAttributesOfAFileOnceAndReadsOnlyPhotosOnce) {
  std::vector<Path> asked;
  std::vector<Path> read;
  files.onAttributes = [&](const Path& path) {
    asked.push_back(path);
    return std::nullopt;
  };
  files.onRead = [&](const Path& path) {
    read.push_back(path);
    return std::nullopt;
  };
  const Path clip = video(500);
  const Path undated = photo({});
  plan(clip);
  plan(undated);
  EXPECT_EQ(std::count(asked.begin(), asked.end(), clip), 1);
  EXPECT_EQ(std::count(asked.begin(), asked.end(), undated), 1);
  EXPECT_EQ(asked.size(), 4U);  // and of each target
  EXPECT_EQ(read, std::vector{undated});
}

TEST_F(PlanFile, LeavesOutASmallVideoBeforeItIsNamed) {
  options.filterSmallVideos = true;
  const auto planned = plan(video(500));
  ASSERT_FALSE(planned);
  const Verdict& verdict = planned.error();
  EXPECT_EQ(verdict.outcome, Outcome::small);
  EXPECT_EQ(verdict.sourceSize, 500U);
  EXPECT_EQ(verdict.sourceModified, parseLocalTime(newYear));
  EXPECT_EQ(verdict.target, std::nullopt);
  EXPECT_EQ(verdict.date, std::nullopt);
}

TEST_F(PlanFile, FindsWhatStandsAtTheTarget) {
  const Path there = writeFile(root / "out/2015/01/01/VIDEO_20150101000000_500.MOV", "x");
  const auto planned = plan(video(500));
  ASSERT_FALSE(planned);
  EXPECT_EQ(planned.error().outcome, Outcome::exists);
  EXPECT_EQ(planned.error().target, there);
  EXPECT_EQ(planned.error().date, (NamingDate{partsOf(newYear), DateOrigin::modified}));
}

TEST_F(PlanFile, FailsWhereNobodyKnowsWhetherTheTargetIsThere) {
  const Path file = video(500);
  const Path to = plan(file).value().to.value();
  files.onAttributes = failingFor(to);
  const auto planned = plan(file);
  ASSERT_FALSE(planned);
  EXPECT_EQ(planned.error().outcome, Outcome::failed);
  EXPECT_EQ(planned.error().target, to);
  EXPECT_EQ(planned.error().error, "on purpose");
}

TEST_F(PlanFile, CallsAFileUnreadableThatSeemsSmallForWantOfAttributes) {
  options.filterSmallVideos = true;
  const Path file = video(3000000);
  files.onAttributes = failingFor(file);
  const auto planned = plan(file);
  ASSERT_FALSE(planned);
  EXPECT_EQ(planned.error().outcome, Outcome::unreadable);
  EXPECT_EQ(planned.error().counted(), Outcome::small);
  EXPECT_EQ(planned.error().error, "on purpose");
}

TEST_F(PlanFile, CallsAPhotoUnreadableWhoseTargetIsThereByAGuessedDate) {
  const Path file = photo({.digitized = mayDay});
  files.onRead = failingFor(file);
  const auto entry = plan(file);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->planned.date, (NamingDate{partsOf(newYear), DateOrigin::modified}));
  EXPECT_EQ(entry->planned.readError, "on purpose");
  writeFile(*entry->to, "x");
  const auto again = plan(file);
  ASSERT_FALSE(again);
  EXPECT_EQ(again.error().outcome, Outcome::unreadable);
  EXPECT_EQ(again.error().counted(), Outcome::exists);
}

TEST_F(PlanFile, HasNoTargetWhereNoFolderFormatIsChosen) {
  options.folderFormat = FolderFormat::none;
  const auto entry = plan(video(500));
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->to, std::nullopt);
}

TEST_F(PlanFile, KeepsATargetFolderThatIsNotText) {
  target = Path("/t\xff%20/");
  EXPECT_EQ(plan(video(500)).value().to, Path("/t\xff%20/2015/01/01/VIDEO_20150101000000_500.MOV"));
}

}  // namespace kestrova
