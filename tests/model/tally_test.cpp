#include "model/tally.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

void add(Tally& tally, Outcome outcome, std::uint64_t size) {
  tally.add({.outcome = outcome, .source = {}, .sourceSize = size});
}

TEST(Tally, CountsFilesToOrganiseWhateverTheirFate) {
  Tally tally;
  std::uint64_t size = 1;
  for (const auto outcome : {Outcome::copied, Outcome::resized, Outcome::rewritten, Outcome::small,
                             Outcome::exists, Outcome::nameTaken, Outcome::failed, Outcome::unreadable}) {
    add(tally, outcome, size);
    size *= 10;
  }
  EXPECT_EQ(tally.settled(), (Amount{.files = 8, .bytes = 11'111'111}));
  EXPECT_EQ(tally.of(Outcome::failed), (Amount{.files = 1, .bytes = 1'000'000}));
  EXPECT_EQ(tally.amounts().size(), 8U);
}

TEST(Tally, LeavesOutWhatTheSearchSetsAsideAndWhatWasNotReached) {
  Tally tally;
  for (const auto outcome : {Outcome::duplicate, Outcome::sameContent, Outcome::notReached})
    add(tally, outcome, 5);
  EXPECT_EQ(tally.settled(), Amount());
  EXPECT_EQ(tally.of(Outcome::notReached).files, 1);
}

TEST(Tally, TakesAnUnreadableDuplicateForSetAside) {
  Tally tally;
  tally.add({.outcome = Outcome::unreadable, .source = "a.jpg", .countedAs = Outcome::duplicate});
  EXPECT_EQ(tally.settled().files, 0);
  EXPECT_EQ(tally.of(Outcome::unreadable).files, 1);
  EXPECT_EQ(tally.of(Outcome::duplicate).files, 0);
}

TEST(Tally, KeepsWhatCouldNotBeReadWrittenOrRewritten) {
  Tally tally;
  add(tally, Outcome::copied, 1);
  tally.add({.outcome = Outcome::copied, .source = "0.jpg", .error = "does not decode"});
  tally.add({.outcome = Outcome::failed, .source = "a.jpg", .error = "full"});
  tally.add({.outcome = Outcome::unreadable, .source = "b.jpg", .error = "refused"});
  const auto remarks = tally.remarks();
  ASSERT_EQ(remarks.size(), 3U);
  EXPECT_EQ(remarks[0].outcome, Outcome::copied);
  EXPECT_EQ(remarks[1].error, "full");
  EXPECT_EQ(remarks[2].source, Path("b.jpg"));
  EXPECT_EQ(remarks[2].outcome, Outcome::unreadable);
}

TEST(Tally, StartsAgainFromZero) {
  Tally tally;
  add(tally, Outcome::failed, 5);
  tally.clear();
  EXPECT_EQ(tally.settled(), Amount());
  EXPECT_TRUE(tally.amounts().empty());
  EXPECT_TRUE(tally.remarks().empty());
}

}  // namespace

}  // namespace kestrova
