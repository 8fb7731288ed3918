#include "platform/packed_records.h"

#include <gtest/gtest.h>
#include <malloc.h>

namespace kestrova {

namespace {

std::size_t bytesInUse() { return mallinfo2().uordblks + mallinfo2().hblkhd; }

void fill(PackedRecords& records, int count) {
  for (int i = 0; i < count; ++i) {
    auto record = records.append();
    record.path(0, "/a folder with quite a long name/and another one/" + std::to_string(i / 500) + "/photo " +
                       std::to_string(i));
    record.number(static_cast<std::uint64_t>(i));
  }
}

}  // namespace

TEST(PackedRecords, GivesBackPathsWithAndWithoutFolders) {
  const std::vector<std::string> paths{"/a/b", "/a/c", "/a/b/c", "/a/", "", "a", "/", "//", "/a/d", "/b/d"};
  PackedRecords records;
  for (const auto& path : paths) {
    auto record = records.append();
    record.path(0, path);
    record.path(1, "/other/" + path);
    record.text(path);
  }
  for (std::size_t i = 0; i < paths.size(); ++i) {
    auto record = records.read(i);
    EXPECT_EQ(record.path(), paths[i]);
    EXPECT_EQ(record.path(), "/other/" + paths[i]);
    EXPECT_EQ(record.text(), paths[i]);
  }
}

TEST(PackedRecords, ShareTheirFoldersInMemory) {
  constexpr int count = 100000;
  const std::size_t before = bytesInUse();
  PackedRecords records;
  fill(records, count);
  EXPECT_LT(bytesInUse() - before, std::size_t{count} * 30);
}

TEST(PackedRecords, FreeTheMemoryOfWhatIsReleased) {
  const std::size_t before = bytesInUse();
  PackedRecords records;
  fill(records, 100000);
  const std::size_t full = bytesInUse() - before;
  records.releaseBefore(90000);
  auto record = records.read(90000);
  EXPECT_TRUE(record.path().ends_with("/photo 90000"));
  EXPECT_EQ(record.number(), 90000U);
  if (full == 0) GTEST_SKIP() << "a sanitizer's allocator does not tell how much is in use";
  EXPECT_LT(bytesInUse() - before, full / 5);
}

TEST(PackedRecords, StartAgainAfterBeingCleared) {
  const std::size_t before = bytesInUse();
  PackedRecords records;
  for (int time = 0; time < 2; ++time) {
    fill(records, 100000);
    EXPECT_TRUE(records.read(0).path().ends_with("/photo 0"));
    const std::size_t full = bytesInUse() - before;
    records.releaseBefore(90000);
    if (full > 0) {
      EXPECT_LT(bytesInUse() - before, full / 5);
    }
    records.clear();
    EXPECT_EQ(records.size(), 0U);
  }
}

}  // namespace kestrova
