#include "window/run_tally.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using Outcome = Verdict::Outcome;

void add(RunTally& tally, Outcome outcome, std::uint64_t size) {
  Verdict verdict;
  verdict.outcome = outcome;
  verdict.sourceSize = size;
  tally.add(verdict);
}

TEST(RunTally, CountsFilesToOrganiseWhateverTheirFate) {
  RunTally tally;
  std::uint64_t size = 1;
  for (const auto outcome : {Outcome::copied, Outcome::resized, Outcome::rewritten, Outcome::small,
                             Outcome::exists, Outcome::failed}) {
    add(tally, outcome, size);
    size *= 10;
  }
  EXPECT_EQ(tally.settledFiles(), 6);
  EXPECT_EQ(tally.settledBytes(), 111'111);
  EXPECT_EQ(tally.failedFiles(), 1);
}

TEST(RunTally, PassesOverWhatTheSearchSetsAside) {
  RunTally tally;
  add(tally, Outcome::duplicate, 5);
  add(tally, Outcome::sameContent, 5);
  EXPECT_EQ(tally.settledFiles(), 0);
  EXPECT_EQ(tally.settledBytes(), 0);
}

TEST(RunTally, BeginsAnew) {
  RunTally tally;
  add(tally, Outcome::failed, 5);
  tally.clear();
  EXPECT_EQ(tally.settledFiles() + tally.settledBytes() + tally.failedFiles(), 0);
}

}  // namespace

}  // namespace kestrova
