#include "model/tally.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using Outcome = Verdict::Outcome;

void add(Tally& tally, Outcome outcome, std::uint64_t size) {
  Verdict verdict;
  verdict.outcome = outcome;
  verdict.sourceSize = size;
  tally.add(verdict);
}

TEST(Tally, CountsFilesToOrganiseWhateverTheirFate) {
  Tally tally;
  std::uint64_t size = 1;
  for (const auto outcome : {Outcome::copied, Outcome::resized, Outcome::rewritten, Outcome::small,
                             Outcome::exists, Outcome::failed}) {
    add(tally, outcome, size);
    size *= 10;
  }
  EXPECT_EQ(tally.settled().files, 6);
  EXPECT_EQ(tally.settled().bytes, 111'111);
  EXPECT_EQ(tally.of(Outcome::failed).files, 1);
}

TEST(Tally, PassesOverWhatTheSearchSetsAside) {
  Tally tally;
  add(tally, Outcome::duplicate, 5);
  add(tally, Outcome::sameContent, 5);
  EXPECT_EQ(tally.settled().files, 0);
  EXPECT_EQ(tally.settled().bytes, 0);
}

TEST(Tally, BeginsAnew) {
  Tally tally;
  add(tally, Outcome::failed, 5);
  tally.clear();
  EXPECT_EQ(tally.settled().files + tally.settled().bytes + tally.of(Outcome::failed).files, 0);
}

}  // namespace

}  // namespace kestrova
