#include "platform/published_value.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrova {

TEST(PublishedValue, KeepsAFormerValueForThoseWhoReadIt) {
  PublishedValue<std::string> value;
  value = "first";
  const std::string& first = value.get();
  for (int i = 0; i < 100; ++i) value = "number " + std::to_string(i);
  EXPECT_EQ(first, "first");
  EXPECT_EQ(value.get(), "number 99");
}

TEST(PublishedValue, KeepsNothingOfAValueThatIsTheSame) {
  PublishedValue<std::string> value;
  value = "one";
  const std::string* const place = &value.get();
  value = "one";
  EXPECT_EQ(&value.get(), place);
}

}  // namespace kestrova
