#include "report/equal_files.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace kestrova::report {

namespace {

using test::writeFile;

constexpr std::size_t severalPieces = 700'000;

struct EqualFilesTest : testing::Test {
  test::TemporaryFolder folder;
  EqualSizedFiles files;

  /// A file of the common size: `letter` throughout, or another one at the very end.
  Path file(const std::string& name, char letter, char last) {
    std::string contents(files.size, letter);
    if (!contents.empty()) contents.back() = last;
    return writeFile(folder / name, contents);
  }
  void want(const Path& path) { files.wanted.push_back(path); }
  void offer(const Path& path) { files.candidates.push_back(path); }
  std::vector<EqualFile> found() { return findEqualFiles(files).value(); }
};

TEST_F(EqualFilesTest, AreFoundToTheLastByte) {
  files.size = severalPieces;
  want(file("a", 'a', '1'));
  want(file("b", 'a', '2'));
  want(file("c", 'a', '3'));
  offer(file("x", 'a', '2'));
  offer(file("y", 'a', '1'));
  offer(file("z", 'b', '3'));
  const auto matches = found();
  EXPECT_EQ(matches[0].candidate, 1U);
  EXPECT_EQ(matches[1].candidate, 0U);
  EXPECT_EQ(matches[2].candidate, std::nullopt);
}

TEST_F(EqualFilesTest, AreTheFirstOfSeveral) {
  files.size = 10;
  want(file("a", 'a', 'a'));
  want(file("b", 'a', 'a'));
  offer(file("x", 'x', 'x'));
  offer(file("y", 'a', 'a'));
  offer(file("z", 'a', 'a'));
  for (const auto& match : found()) EXPECT_EQ(match.candidate, 1U);
}

TEST_F(EqualFilesTest, MayBeEmpty) {
  want(writeFile(folder / "a", ""));
  offer(writeFile(folder / "x", ""));
  EXPECT_EQ(found()[0].candidate, 0U);
}

TEST_F(EqualFilesTest, AreFoundAmongMoreThanMayBeOpen) {
  files.size = 9000;
  for (int i = 0; i < 300; ++i) {
    const std::string name = std::to_string(i);
    const std::string contents = name + std::string(files.size - name.size(), '.');
    want(writeFile(folder / "wanted" / name, contents));
    offer(writeFile(folder / "offered" / name, contents));
  }
  const auto matches = found();
  for (std::size_t i = 0; i < matches.size(); ++i) EXPECT_EQ(matches[i].candidate, i);
}

TEST_F(EqualFilesTest, TellWhichWantedFileCannotBeRead) {
  files.size = 10;
  want(folder / "missing");
  want(file("b", 'b', 'b'));
  offer(folder / "missing too");
  offer(file("y", 'b', 'b'));
  const auto matches = found();
  EXPECT_EQ(matches[0].error->code, ENOENT);
  EXPECT_EQ(matches[0].candidate, std::nullopt);
  EXPECT_EQ(matches[1].candidate, 1U);
}

TEST_F(EqualFilesTest, AreNoneWhereTheSizeHasChanged) {
  files.size = 10;
  want(writeFile(folder / "grown", "aaaaaaaaaaa"));
  offer(file("x", 'a', 'a'));
  EXPECT_EQ(found()[0].error->code, EBUSY);
  files.wanted = {file("a", 'a', 'a')};
  files.candidates = {writeFile(folder / "longer", "aaaaaaaaaaa"), writeFile(folder / "shorter", "aaa")};
  EXPECT_EQ(found()[0].candidate, std::nullopt);
}

TEST_F(EqualFilesTest, AreNotOtherNamesOfTheSameFile) {
  files.size = 10;
  want(file("a", 'a', 'a'));
  std::filesystem::create_hard_link(folder / "a", folder / "hard");
  std::filesystem::create_symlink(folder / "a", folder / "symbolic");
  offer(folder / "hard");
  offer(folder / "symbolic");
  offer(folder / "a");
  EXPECT_EQ(found()[0].candidate, std::nullopt);
  offer(file("copy", 'a', 'a'));
  EXPECT_EQ(found()[0].candidate, 3U);
}

TEST_F(EqualFilesTest, AreNoLongerLookedForOnceStopped) {
  files.size = severalPieces;
  want(file("a", 'a', 'a'));
  offer(file("x", 'a', 'a'));
  int asked = 0;
  const auto found = findEqualFiles(files, ReadFrom::cache, [&] { return ++asked == 2; });
  ASSERT_FALSE(found);
  EXPECT_EQ(found.error().code, ECANCELED);
}

}  // namespace

}  // namespace kestrova::report
