#include "planning/calendar.h"

#include "support/time_zone.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

DateParts partsOf(std::string_view text) { return splitDate(parseLocalTime(text).value()); }

}  // namespace

TEST(Calendar, ReadsBackTheLocalTimeThatAPhotoTells) {
  const test::TimeZone zone("Europe/Istanbul");
  EXPECT_EQ(partsOf("2014:05:21 13:45:02"), (DateParts{2014, 5, 21, 13, 45, 2, 4}));
}

TEST(Calendar, CountsSundayAsTheFirstWeekday) {
  EXPECT_EQ(partsOf("2014:05:18 00:00:00").weekday, 1);
  EXPECT_EQ(partsOf("2014:05:24 23:59:59").weekday, 7);
}

TEST(Calendar, SplitsAnInstantInTheUsersTimeZone) {
  const Date newYear = Date(std::chrono::sys_days(std::chrono::year(2015) / 1 / 1));
  {
    const test::TimeZone zone("America/New_York");
    EXPECT_EQ(splitDate(newYear), (DateParts{2014, 12, 31, 19, 0, 0, 4}));
  }
  const test::TimeZone zone("Asia/Tokyo");
  EXPECT_EQ(splitDate(newYear), (DateParts{2015, 1, 1, 9, 0, 0, 5}));
}

TEST(Calendar, CountsAnInstantBefore1970ToTheSecondThatItLiesIn) {
  const test::TimeZone zone("UTC");
  EXPECT_EQ(splitDate(Date(std::chrono::milliseconds(-500))), (DateParts{1969, 12, 31, 23, 59, 59, 4}));
}

TEST(Calendar, TakesATimeThatAClockChangeSkippedAsTheFirstInstantAfterTheGap) {
  const test::TimeZone zone("Europe/Berlin");
  EXPECT_EQ(partsOf("2014:03:30 02:30:00"), (DateParts{2014, 3, 30, 3, 0, 0, 1}));
  EXPECT_EQ(partsOf("2014:03:30 02:00:00"), (DateParts{2014, 3, 30, 3, 0, 0, 1}));
  EXPECT_EQ(partsOf("2014:03:30 01:59:59"), (DateParts{2014, 3, 30, 1, 59, 59, 1}));
}

TEST(Calendar, TakesATimeOfASkippedDayAsTheFirstInstantAfterIt) {
  const test::TimeZone zone("Pacific/Apia");
  EXPECT_EQ(partsOf("2011:12:30 12:00:00"), (DateParts{2011, 12, 31, 0, 0, 0, 7}));
}

TEST(Calendar, KeepsATimeThatAClockChangeRepeats) {
  const test::TimeZone zone("Europe/Berlin");
  EXPECT_EQ(partsOf("2014:10:26 02:30:00"), (DateParts{2014, 10, 26, 2, 30, 0, 1}));
}

TEST(Calendar, RefusesATextThatIsNoDate) {
  for (const char* text :
       {"", "2014:05:21", "2014-05-21 13:45:02", "2014:05:21 13:45:02Z", " 2014:05:21 13:45:02",
        "2014:5:21 13:45:02", "    :  :     :  :  ", "0000:00:00 00:00:00", "2014:02:30 00:00:00",
        "2014:13:01 00:00:00", "2014:05:21 24:00:00", "2014:05:21 13:60:02", "2014:05:21 13:45:60",
        "2014:05:21T13:45:02", "20x4:05:21 13:45:02", "2014:05:+1 13:45:02"}) {
    EXPECT_FALSE(parseLocalTime(text).has_value()) << text;
  }
}

TEST(Calendar, KnowsLeapDays) {
  EXPECT_EQ(partsOf("2012:02:29 12:00:00").day, 29);
  EXPECT_FALSE(parseLocalTime("2013:02:29 12:00:00").has_value());
}

}  // namespace kestrova
