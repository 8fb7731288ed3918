#include "report/timestamps.h"

#include <limits>

#include <gtest/gtest.h>

namespace kestrova::report {

namespace {

TEST(Timestamps, AreNanosecondsSince1970) {
  EXPECT_EQ(nanosecondsText({0, 0}), "0");
  EXPECT_EQ(nanosecondsText({0, 5}), "5");
  EXPECT_EQ(nanosecondsText({1400679902, 7}), "1400679902000000007");
  EXPECT_EQ(nanosecondsText({253402300799, 123456789}), "253402300799123456789");
}

TEST(Timestamps, AreNegativeBefore1970) {
  EXPECT_EQ(nanosecondsText({-1, 0}), "-1000000000");
  EXPECT_EQ(nanosecondsText({-1, 999'999'999}), "-1");
  EXPECT_EQ(nanosecondsText({-2, 1}), "-1999999999");
}

TEST(Timestamps, CountBackToTheFirstInstantThatASystemCanName) {
  EXPECT_EQ(nanosecondsText({std::numeric_limits<std::int64_t>::min(), 0}), "-9223372036854775808000000000");
}

TEST(UtcText, IsIso8601) {
  EXPECT_EQ(utcText(std::chrono::sys_seconds(std::chrono::seconds(1795256102))), "2026-11-21T10:15:02Z");
}

}  // namespace

}  // namespace kestrova::report
