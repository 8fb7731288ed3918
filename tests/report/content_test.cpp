#include "report/content.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrova::report {

namespace {

using test::writeFile;

struct Content : testing::Test {
  test::TemporaryFolder folder;
  std::string large = std::string(600'000, 'x');
};

TEST_F(Content, HasTheSumThatOtherProgramsGive) {
  const std::string sum = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
  EXPECT_EQ(sha256Of(writeFile(folder / "abc", "abc")).value(), sum);
  EXPECT_EQ(sha256Of(Bytes{'a', 'b', 'c'}), sum);
  EXPECT_EQ(sha256Of(writeFile(folder / "empty", "")).value(),
            "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST_F(Content, HasTheSameSumInPiecesAndFromTheDisk) {
  const Path file = writeFile(folder / "large", large);
  const auto bytes = reinterpret_cast<const std::uint8_t*>(large.data());
  EXPECT_EQ(sha256Of(file).value(), sha256Of(ByteView(bytes, large.size())));
  EXPECT_EQ(sha256Of(file, ReadFrom::disk).value(), sha256Of(file).value());
}

TEST_F(Content, IsComparedToTheLastByte) {
  const Path first = writeFile(folder / "first", large);
  EXPECT_TRUE(haveSameContent(first, writeFile(folder / "same", large)).value());
  large.back() = 'y';
  EXPECT_FALSE(haveSameContent(first, writeFile(folder / "other", large)).value());
  EXPECT_FALSE(haveSameContent(first, writeFile(folder / "longer", large + 'y')).value());
}

TEST_F(Content, IsComparedAndSummedWithOneReading) {
  const Path first = writeFile(folder / "first", large);
  const Path second = writeFile(folder / "second", large);
  const auto same = compareAndSum(first, second, ReadFrom::disk).value();
  EXPECT_TRUE(same.isSameContent);
  EXPECT_FALSE(same.isSameFile);
  EXPECT_EQ(same.sha256, sha256Of(first).value());
  EXPECT_TRUE(compareAndSum(first, first).value().isSameFile);
  large.back() = 'y';
  const auto other = compareAndSum(first, writeFile(folder / "other", large)).value();
  EXPECT_FALSE(other.isSameContent);
  EXPECT_EQ(other.sha256, "");
}

TEST_F(Content, SaysWhichFileCannotBeRead) {
  const Path file = writeFile(folder / "file", "abc");
  const auto first = haveSameContent(folder / "missing", file);
  ASSERT_FALSE(first);
  EXPECT_TRUE(first.error().isFirst);
  EXPECT_EQ(first.error().error.code, ENOENT);
  const auto second = haveSameContent(file, folder / "missing");
  ASSERT_FALSE(second);
  EXPECT_FALSE(second.error().isFirst);
  EXPECT_EQ(sha256Of(folder / "missing").error().code, ENOENT);
}

TEST_F(Content, NeverWaitsForAPipe) {
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(sha256Of(folder / "pipe"));
}

TEST_F(Content, IsNoLongerReadOnceStopped) {
  const Path file = writeFile(folder / "large", large);
  int asked = 0;
  const auto stopped = [&] { return ++asked > 1; };
  EXPECT_EQ(sha256Of(file, ReadFrom::cache, stopped).error().code, ECANCELED);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(haveSameContent(file, file, ReadFrom::cache, [] { return true; }).error().error.code, ECANCELED);
}

}  // namespace

}  // namespace kestrova::report
