#include "execution/operation_record.h"

#include "execution/operation_queue.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

PlanEntry entryOf(PlanEntry::Handler handler) {
  return {.handler = handler,
          .from = "/from.jpg",
          .to = Path("/to.JPG"),
          .orientation = 6,
          .resolution = Resolution::fit1080p};
}

}  // namespace

TEST(OperationRecord, OfACopyHasExactlyThreeKeys) {
  const auto operation = std::make_shared<InvocationOperation>();
  const auto record = recordOf(entryOf(PlanEntry::Handler::copy), operation);
  EXPECT_EQ(record.count(), 3U);
  EXPECT_EQ(record.file("from"), Path("/from.jpg"));
  EXPECT_EQ(record.file("to"), Path("/to.JPG"));
  EXPECT_EQ(record.operation(), operation);
}

TEST(OperationRecord, OfAResizeHoldsOrientationAndResolutionToo) {
  const auto operation = std::make_shared<InvocationOperation>();
  const auto record = recordOf(entryOf(PlanEntry::Handler::resize), operation);
  EXPECT_EQ(record.count(), 5U);
  EXPECT_EQ(record.number("orientation"), 6);
  EXPECT_EQ(record.number("resolution"), 2);
  EXPECT_EQ(record.operation(), operation);
}

TEST(OperationRecord, OfAResizeWithoutOrientationHoldsOnlyFromAndTo) {
  auto entry = entryOf(PlanEntry::Handler::resize);
  entry.orientation.reset();
  const auto operation = std::make_shared<InvocationOperation>();
  const auto record = recordOf(entry, operation);
  EXPECT_EQ(record.count(), 2U);
  EXPECT_FALSE(record.number("resolution").has_value());
  EXPECT_EQ(record.operation(), nullptr);
}

TEST(OperationRecord, CarriesResolutionMinusOneWhenNoneIsChosen) {
  auto entry = entryOf(PlanEntry::Handler::resize);
  entry.resolution = Resolution::none;
  EXPECT_EQ(recordOf(entry, std::make_shared<InvocationOperation>()).number("resolution"), -1);
}

TEST(OperationRecord, CarriesResolution0ForAPhotoThatKeepsItsSize) {
  auto entry = entryOf(PlanEntry::Handler::resize);
  entry.resolution = Resolution::original;
  const auto operation = std::make_shared<InvocationOperation>();
  const auto record = recordOf(entry, operation);
  EXPECT_EQ(record.count(), 5U);
  EXPECT_EQ(record.number("resolution"), 0);
  EXPECT_EQ(record.operation(), operation);
}

TEST(OperationRecord, EndsAtTheFirstAbsentValue) {
  auto entry = entryOf(PlanEntry::Handler::copy);
  entry.to.reset();
  EXPECT_EQ(recordOf(entry, std::make_shared<InvocationOperation>()).count(), 1U);
}

TEST(OperationRecord, KnowsItsPlaceInThePlanEvenIfItEndsEarly) {
  auto entry = entryOf(PlanEntry::Handler::resize);
  entry.orientation.reset();
  const auto operation = std::make_shared<InvocationOperation>();
  EXPECT_EQ(recordOf(entry, operation, 7).index(), 7U);
  EXPECT_EQ(recordOf(entryOf(PlanEntry::Handler::copy), operation, 0).index(), 0U);
  EXPECT_EQ(recordOf(entry, operation).index(), std::nullopt);
}

TEST(OperationRecord, DoesNotKeepItsOperationAlive) {
  auto operation = std::make_shared<InvocationOperation>();
  const auto record = recordOf(entryOf(PlanEntry::Handler::copy), operation);
  operation.reset();
  EXPECT_EQ(record.operation(), nullptr);
}

TEST(OperationRecord, ComparesKeysWithCase) {
  const auto record = recordOf(entryOf(PlanEntry::Handler::copy), std::make_shared<InvocationOperation>());
  EXPECT_FALSE(record.file("From").has_value());
}

TEST(OperationRecord, HoldsAFilesContents) {
  const OperationRecord record{{"to", OperationRecord::FileUrl("/x")}, {"data", Bytes{1, 2}}};
  ASSERT_NE(record.data(), nullptr);
  EXPECT_EQ(*record.data(), (Bytes{1, 2}));
}

}  // namespace kestrova
