#include "model/outcome.h"

#include "model/naming_date.h"

#include <set>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

constexpr auto lastOutcome = Outcome::notReached;
constexpr auto lastOrigin = DateOrigin::runStart;

template <typename Enum, typename Word>
std::set<std::string_view> wordsUpTo(Enum last, Word wordOf) {
  std::set<std::string_view> words;
  for (int value = 0; value <= static_cast<int>(last); ++value)
    words.insert(wordOf(static_cast<Enum>(value)));
  return words;
}

}  // namespace

TEST(Outcome, HasAWordOfItsOwnForRecords) {
  EXPECT_EQ(
      wordsUpTo(lastOutcome, [](Outcome outcome) { return traitsOf(outcome).word; }),
      (std::set<std::string_view>{"copied", "resized", "rewritten", "duplicate", "same-content", "small",
                                  "exists", "name-taken", "failed", "unreadable", "not-reached"}));
}

TEST(DateOrigin, HasAWordOfItsOwnForRecords) {
  EXPECT_EQ(wordsUpTo(lastOrigin, wordOf),
            (std::set<std::string_view>{"digitised", "modified", "run-start"}));
}

}  // namespace kestrova
