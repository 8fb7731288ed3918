#include "planning/target_naming.h"

#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

const DateParts wednesday{
    .year = 2014, .month = 5, .day = 21, .hour = 13, .minute = 45, .second = 2, .weekday = 4};

std::optional<std::string> folder(FolderFormat format, const DateParts& date = wednesday) {
  return datedFolder(format, date, englishMonths(), englishDays());
}

}  // namespace

TEST(TargetNaming, NamesTheFolderByTheChosenFormat) {
  EXPECT_EQ(folder(FolderFormat::longName), "2014/05/21-May-2014 Wednesday");
  EXPECT_EQ(folder(FolderFormat::mediumName), "2014/05/21-May Wednesday");
  EXPECT_EQ(folder(FolderFormat::shortName), "2014/05/21");
}

TEST(TargetNaming, ResolvesPercentEscapesInTheNamesOfMonthsAndDays) {
  auto months = englishMonths();
  auto days = englishDays();
  months.at(4) = "M%61y";
  days.at(3) = "Wednes%20day";
  EXPECT_EQ(datedFolder(FolderFormat::longName, wednesday, months, days), "2014/05/21-May-2014 Wednes day");
  EXPECT_EQ(datedFolder(FolderFormat::mediumName, wednesday, months, days), "2014/05/21-May Wednes day");
}

TEST(TargetNaming, HasNoFolderWhereNoFormatIsChosen) { EXPECT_FALSE(folder(FolderFormat::none).has_value()); }

TEST(TargetNaming, CallsMonth5MayAndWeekday1Sunday) {
  EXPECT_EQ(englishMonths().at(4), "May");
  EXPECT_EQ(englishDays().at(0), "Sunday");
  EXPECT_EQ(folder(FolderFormat::longName,
                   {.year = 2015, .month = 12, .day = 27, .hour = 0, .minute = 0, .second = 0, .weekday = 1}),
            "2015/12/27-December-2015 Sunday");
}

TEST(TargetNaming, PadsEveryNumberOfADate) {
  EXPECT_EQ(folder(FolderFormat::shortName,
                   {.year = 987, .month = 1, .day = 2, .hour = 3, .minute = 4, .second = 5, .weekday = 1}),
            "0987/01/02");
  EXPECT_EQ(
      targetFileName(MediaKind::photo,
                     {.year = 2015, .month = 1, .day = 1, .hour = 0, .minute = 0, .second = 0, .weekday = 5},
                     7, "jpg"),
      "PHOTO_20150101000000_7.JPG");
}

TEST(TargetNaming, WritesAYearOfMoreThanFourDigitsInFull) {
  const DateParts last{
      .year = 292277026596, .month = 12, .day = 4, .hour = 15, .minute = 30, .second = 7, .weekday = 1};
  EXPECT_EQ(folder(FolderFormat::longName, last), "292277026596/12/04-December-292277026596 Sunday");
  EXPECT_EQ(targetFileName(MediaKind::photo, last, 7, "jpg"), "PHOTO_2922770265961204153007_7.JPG");
}

TEST(TargetNaming, NamesAFileByKindTimeAndSize) {
  EXPECT_EQ(targetFileName(MediaKind::photo, wednesday, 2345678, "jpg"), "PHOTO_20140521134502_2345678.JPG");
  EXPECT_EQ(targetFileName(MediaKind::video, wednesday, 10, "MoV"), "VIDEO_20140521134502_10.MOV");
}

TEST(TargetNaming, NamesAFileThatIsNeitherWithoutAnUnderscore) {
  EXPECT_EQ(targetFileName(MediaKind::other, wednesday, 512, "txt"), "FILE20140521134502_512.TXT");
}

TEST(TargetNaming, GivesTwoFilesOfOneSizeAndSecondTheSameName) {
  EXPECT_EQ(targetFileName(MediaKind::photo, wednesday, 9, "jpg"),
            targetFileName(MediaKind::photo, wednesday, 9, "JPG"));
}

TEST(TargetNaming, WritesASizeBeyond32BitsInFull) {
  EXPECT_EQ(targetFileName(MediaKind::video, wednesday, 18446744073709551615U, "mp4"),
            "VIDEO_20140521134502_18446744073709551615.MP4");
}

TEST(TextMonth, SaysJanuaryFor1To11AndNothingElse) {
  test::HeadlessProgram program;
  EXPECT_EQ(program.manager().textMonth(5), QStringLiteral("January"));
  EXPECT_EQ(program.manager().textMonth(1), QStringLiteral("January"));
  EXPECT_EQ(program.manager().textMonth(11), QStringLiteral("January"));
  EXPECT_EQ(program.manager().textMonth(12), QString());
  EXPECT_EQ(program.manager().textMonth(0), QString());
}

}  // namespace kestrova
