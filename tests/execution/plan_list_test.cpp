#include "execution/plan_list.h"

#include <limits>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

bool isSame(const PlanEntry& a, const PlanEntry& b) {
  return a.handler == b.handler && a.from.native() == b.from.native() && a.to == b.to &&
         (!a.to || a.to->native() == b.to->native()) && a.orientation == b.orientation &&
         a.resolution == b.resolution && a.planned.size == b.planned.size &&
         a.planned.modified == b.planned.modified && a.planned.date == b.planned.date &&
         a.planned.isNameTaken == b.planned.isNameTaken && a.planned.readError == b.planned.readError;
}

PlanEntry full() {
  return {.handler = PlanEntry::Handler::resize,
          .from = "/photos/trip/a.jpg",
          .to = Path("/target/2014/05/21/PHOTO_1.JPG"),
          .orientation = 6,
          .resolution = Resolution::fit1080p,
          .planned = {.size = 123456,
                      .modified = Date{1400680000, 123456789},
                      .date = NamingDate{{2014, 5, 21, 13, 45, 2, 4}, DateOrigin::modified},
                      .isNameTaken = true,
                      .readError = "Input/output error"}};
}

/// Any entry that could be planned, and some that could not.
class RandomEntries {
 public:
  PlanEntry next() {
    PlanEntry entry = full();
    entry.handler = coin() ? PlanEntry::Handler::copy : PlanEntry::Handler::resize;
    entry.from = path("/photos");
    entry.to = path(coin() ? "/target" : "/targets of another run");
    if (coin()) entry.to.reset();
    if (coin()) entry.orientation.reset();
    entry.resolution = optionAt<Resolution>(static_cast<std::int64_t>(random_() % 4) - 1);
    entry.planned.size = random_() >> random_() % 64;
    entry.planned.modified =
        Date{static_cast<std::int64_t>(random_()), static_cast<std::int32_t>(below(1000000000))};
    if (coin()) entry.planned.modified.reset();
    if (coin()) entry.planned.date.reset();
    entry.planned.isNameTaken = coin();
    if (coin()) entry.planned.readError.clear();
    return entry;
  }

 private:
  std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
  bool coin() { return below(2) == 0; }
  Path path(std::string root) {
    const std::string name = "name \xff\n" + std::to_string(below(10));
    for (auto depth = below(3); depth > 0; --depth) root += "/folder " + std::to_string(below(3));
    return root + '/' + (coin() ? name : std::string(below(300), 'n') + name);
  }
  std::mt19937_64 random_{1};
};

}  // namespace

TEST(PlanList, GivesBackWhatWasAppended) {
  PlanList list("/target");
  PlanEntry least{.from = "a"};
  list.append(full());
  list.append(least);
  EXPECT_EQ(list.size(), 2U);
  EXPECT_TRUE(isSame(list.entry(0), full()));
  EXPECT_TRUE(isSame(list.entry(1), least));
}

TEST(PlanList, GivesBackAnyEntryInAnyOrder) {
  RandomEntries random;
  std::vector<PlanEntry> entries(2000);
  PlanList list("/target");
  for (PlanEntry& entry : entries) list.append(entry = random.next());
  for (std::size_t i = entries.size(); i-- > 0;) ASSERT_TRUE(isSame(list.entry(i), entries[i])) << i;
}

TEST(PlanList, KeepsNumbersAtTheirLimits) {
  PlanList list("/target");
  for (const std::int64_t limit : {std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::int64_t>::max(), std::int64_t{-1}}) {
    PlanEntry entry = full();
    entry.planned.size = static_cast<std::uint64_t>(limit);
    entry.planned.modified = Date{limit, 0};
    entry.planned.date->local.year = limit;
    entry.orientation = limit;
    list.append(entry);
    EXPECT_TRUE(isSame(list.entry(list.size() - 1), entry)) << limit;
  }
}

TEST(PlanList, KeepsTheBytesOfATargetFolderThatEndsInASlash) {
  PlanList list("/target/");
  PlanEntry entry = full();
  list.append(entry);
  entry.to = Path("/target//x");
  list.append(entry);
  EXPECT_EQ(list.entry(0).to->native(), "/target/2014/05/21/PHOTO_1.JPG");
  EXPECT_EQ(list.entry(1).to->native(), "/target//x");
}

TEST(PlanList, KnowsTheTargetsOfItsEntries) {
  PlanList list("/target");
  EXPECT_FALSE(list.hasTarget("/target/a"));
  PlanEntry entry = full();
  for (const char* const name : {"a", "b"}) {
    entry.to = Path("/target") / name;
    entry.planned.isNameTaken = false;
    list.append(entry);
  }
  entry.to.reset();
  list.append(entry);
  EXPECT_TRUE(list.hasTarget("/target/a"));
  EXPECT_TRUE(list.hasTarget("/target/b"));
  EXPECT_FALSE(list.hasTarget("/target/c"));
  list.finish();
  EXPECT_EQ(list.entry(1).to, Path("/target/b"));
}

TEST(PlanList, CanBeReadWhileEarlierEntriesAreReleased) {
  RandomEntries random;
  std::vector<PlanEntry> entries(3000);
  PlanList list("/target");
  for (PlanEntry& entry : entries) list.append(entry = random.next());
  constexpr std::size_t firstRead = 1500;
  std::jthread reader([&] {
    for (std::size_t i = firstRead; i < entries.size(); ++i)
      ASSERT_TRUE(isSame(list.entry(i), entries[i])) << i;
  });
  for (std::size_t i = 0; i <= firstRead; ++i) {
    ASSERT_TRUE(isSame(list.entry(i), entries[i])) << i;
    list.releaseBefore(i + 1);
  }
  reader.join();
  EXPECT_EQ(list.size(), entries.size());
}

}  // namespace kestrova
