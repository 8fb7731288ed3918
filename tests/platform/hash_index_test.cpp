#include "platform/hash_index.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

std::optional<std::size_t> findIn(const HashIndex& index, std::size_t hash, std::size_t number) {
  return index.find(hash, [number](std::size_t found) { return found == number; });
}

}  // namespace

TEST(HashIndex, FindsEveryNumberUnderItsHash) {
  HashIndex index;
  constexpr std::size_t count = 10000;
  for (std::size_t i = 0; i < count; ++i) index.add(i * i, i);
  for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(findIn(index, i * i, i), i);
  EXPECT_EQ(findIn(index, 3, 3), std::nullopt);
}

TEST(HashIndex, TellsNumbersOfOneHashApart) {
  HashIndex index;
  for (std::size_t i = 0; i < 100; ++i) index.add(7, i);
  for (std::size_t i = 0; i < 100; ++i) ASSERT_EQ(findIn(index, 7, i), i);
  EXPECT_EQ(findIn(index, 7, 100), std::nullopt);
}

TEST(HashIndex, AsksOnlyAboutNumbersOfThatHash) {
  HashIndex index;
  for (std::size_t i = 0; i < 1000; ++i) index.add(i, i);
  std::size_t asked = 0;
  index.find(7, [&](std::size_t) { return ++asked == 0; });
  EXPECT_EQ(asked, 1U);
}

TEST(HashIndex, HoldsNothingAtFirstAndAfterBeingCleared) {
  HashIndex index;
  EXPECT_EQ(findIn(index, 1, 1), std::nullopt);
  index.add(1, 1);
  index.clear();
  EXPECT_EQ(findIn(index, 1, 1), std::nullopt);
  index.add(2, 2);
  EXPECT_EQ(findIn(index, 2, 2), 2U);
}

}  // namespace kestrova
