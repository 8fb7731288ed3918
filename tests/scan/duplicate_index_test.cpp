#include "scan/duplicate_index.h"

#include <map>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using Kind = Sighting::Kind;

class DuplicateIndex : public testing::Test {
 protected:
  /// Shows the index a file of this size whose fingerprint is the given text.
  Sighting see(const std::string& path, std::uint64_t size, const std::string& fingerprint) {
    fingerprints[path] = fingerprint;
    return judgeFile(fileList, hashList, {.path = path, .size = size}, [this](const Path& file) {
      ++reads[file.native()];
      return Fingerprint{.digits = fingerprints.at(file.native())};
    });
  }
  FileList fileList;
  HashList hashList;
  std::map<std::string, std::string> fingerprints;
  std::map<std::string, int> reads;
};

}  // namespace

TEST_F(DuplicateIndex, TakesTheFirstFileOfASizeAsNewWithoutReadingIt) {
  EXPECT_EQ(see("/a", 7, "A").kind, Kind::newFile);
  EXPECT_EQ(fileList.find("", 7), "/a");
  EXPECT_TRUE(reads.empty());
}

TEST_F(DuplicateIndex, TakesACopyOfTheFirstFileAsItsDuplicate) {
  see("/a", 7, "A");
  const Sighting copy = see("/b", 7, "A");
  EXPECT_EQ(copy.kind, Kind::duplicate);
  EXPECT_EQ(copy.original, "/a");
  EXPECT_EQ(copy.fingerprint, "A");
  EXPECT_EQ(fileList.size(), 1U);
}

TEST_F(DuplicateIndex, KeepsADifferentFileOfTheSameSizeUnderFingerprintAndSize) {
  see("/a", 7, "A");
  EXPECT_EQ(see("/b", 7, "B").kind, Kind::sameFileSize);
  EXPECT_EQ(fileList.find("B", 7), "/b");
  EXPECT_EQ(fileList.size(), 2U);
}

TEST_F(DuplicateIndex, SkipsAFileThatEqualsALaterOneOfItsSize) {
  see("/a", 7, "A");
  see("/b", 7, "B");
  const Sighting third = see("/c", 7, "B");
  EXPECT_EQ(third.kind, Kind::sameContent);
  EXPECT_EQ(third.original, "/b");
  EXPECT_EQ(fileList.size(), 2U);
}

TEST_F(DuplicateIndex, DoesNotCompareFilesOfDifferentSizes) {
  see("/a", 7, "A");
  EXPECT_EQ(see("/b", 8, "A").kind, Kind::newFile);
  EXPECT_TRUE(reads.empty());
}

TEST_F(DuplicateIndex, ReadsTheFirstFileOfASizeOnlyOnce) {
  see("/a", 7, "A");
  for (const char* path : {"/b", "/c", "/d"}) see(path, 7, path);
  EXPECT_EQ(reads["/a"], 1);
  EXPECT_EQ(hashList.size(), 1U);
  EXPECT_EQ(hashList.find("/a"), "A");
  EXPECT_EQ(hashList.find("/b"), std::nullopt);
}

TEST_F(DuplicateIndex, ListsFilesInTheOrderInWhichTheyWereSeen) {
  see("/z", 1, "Z");
  see("/a", 2, "A");
  see("/m", 1, "M");
  std::string order;
  for (std::size_t i = 0; i < fileList.size(); ++i)
    order += fileList[i].path + ' ' + fileList[i].key() + '\n';
  EXPECT_EQ(order, "/z 1\n/a 2\n/m M1\n");
}

TEST_F(DuplicateIndex, FindsEveryFileOfALongList) {
  constexpr std::uint64_t count = 5000;
  const auto pathOf = [](const char* root, std::uint64_t i) {
    return root + std::to_string(i / 7) + '/' + std::to_string(i);
  };
  for (std::uint64_t i = 0; i < count; ++i) {
    fileList.add("", pathOf("/a", i), i);
    fileList.add(std::to_string(i), pathOf("/b", i), 7);
    hashList.add(pathOf("/a", i), std::to_string(i));
  }
  for (std::uint64_t i = 0; i < count; ++i) {
    ASSERT_EQ(fileList.find("", i), pathOf("/a", i));
    ASSERT_EQ(fileList.find(std::to_string(i), 7), pathOf("/b", i));
    ASSERT_EQ(hashList.find(pathOf("/a", i)), std::to_string(i));
  }
  // Among that many there are two of the same short hash.
  constexpr std::uint64_t many = 300000;
  for (std::uint64_t i = count; i < many; ++i) fileList.add(std::to_string(i), pathOf("/b", i), 7);
  for (std::uint64_t i = count; i < many; ++i) {
    ASSERT_EQ(fileList.find(std::to_string(i), 7), pathOf("/b", i));
  }
  EXPECT_EQ(fileList.find("", count), std::nullopt);
  EXPECT_EQ(fileList.find("0", 8), std::nullopt);
  EXPECT_EQ(hashList.find("/a0/7"), std::nullopt);
}

TEST_F(DuplicateIndex, IsEmptyAfterClearing) {
  see("/a", 7, "A");
  fileList.clear();
  EXPECT_TRUE(fileList.empty());
  EXPECT_EQ(fileList.find("", 7), std::nullopt);
}

}  // namespace kestrova
