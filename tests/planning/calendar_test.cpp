#include "planning/calendar.h"

#include "support/time_zone.h"

#include <chrono>
#include <limits>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

DateParts partsOf(std::string_view text) { return splitDate(parseLocalTime(text).value()); }

/// Midnight UTC.
Date dayOf(int year, int month, int day) {
  const auto days = std::chrono::sys_days(std::chrono::year(year) / month / day).time_since_epoch();
  return {.seconds = std::chrono::seconds(days).count()};
}

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
  const Date newYear = dayOf(2015, 1, 1);
  {
    const test::TimeZone zone("America/New_York");
    EXPECT_EQ(splitDate(newYear), (DateParts{2014, 12, 31, 19, 0, 0, 4}));
  }
  const test::TimeZone zone("Asia/Tokyo");
  EXPECT_EQ(splitDate(newYear), (DateParts{2015, 1, 1, 9, 0, 0, 5}));
}

TEST(Calendar, CountsAnInstantBefore1970ToTheSecondThatItLiesIn) {
  const test::TimeZone zone("UTC");
  EXPECT_EQ(splitDate({.seconds = -1, .nanoseconds = 500'000'000}), (DateParts{1969, 12, 31, 23, 59, 59, 4}));
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

TEST(Calendar, KeepsTheDatesThatPhotosTellForNoDateAtAll) {
  const test::TimeZone zone("Europe/Berlin");
  EXPECT_EQ(partsOf("0001:01:01 00:00:00"), (DateParts{1, 1, 1, 0, 0, 0, 2}));
  EXPECT_EQ(partsOf("9999:12:31 23:59:59"), (DateParts{9999, 12, 31, 23, 59, 59, 6}));
}

TEST(Calendar, SplitsInstantsThatNanosecondsSince1970CannotCount) {
  const test::TimeZone zone("UTC");
  EXPECT_EQ(splitDate(dayOf(2300, 5, 21)), (DateParts{2300, 5, 21, 0, 0, 0, 2}));
  EXPECT_EQ(splitDate(dayOf(1601, 1, 1)), (DateParts{1601, 1, 1, 0, 0, 0, 2}));
  EXPECT_EQ(splitDate(dayOf(10000, 1, 1)), (DateParts{10000, 1, 1, 0, 0, 0, 7}));
  EXPECT_EQ(splitDate(dayOf(-1, 12, 31)), (DateParts{-1, 12, 31, 0, 0, 0, 6}));
}

TEST(Calendar, SplitsTheFirstAndTheLastInstantThatASystemCanName) {
  const test::TimeZone zone("UTC");
  EXPECT_EQ(splitDate({.seconds = std::numeric_limits<std::int64_t>::max()}),
            (DateParts{292277026596, 12, 4, 15, 30, 7, 1}));
  EXPECT_EQ(splitDate({.seconds = std::numeric_limits<std::int64_t>::min()}),
            (DateParts{-292277022657, 1, 27, 8, 29, 52, 1}));
}

TEST(Calendar, FollowsAChangeOfTheTimeZoneOnceItIsTold) {
  const test::TimeZone before("Asia/Tokyo");
  splitDate({});
  setenv("TZ", "UTC", 1);
  refreshTimeZone();
  EXPECT_EQ(splitDate({}).hour, 0);
}

TEST(Calendar, RefusesATextThatIsNotADate) {
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
