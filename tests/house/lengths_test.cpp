#include "support/process.h"
#include "support/temporary_folder.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// How long functions and files may be, measured by lengths.sh.
namespace kestrova {
namespace {

using namespace kestrova::test;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int functionLimit = 35;
constexpr int fileLimit = 300;

/// What is too long below the folders; empty when nothing is.
std::string complaintsAbout(const Path& sources, const Path& tests) {
  return runProcess({KESTROVA_HOUSE "/lengths.sh", sources.native(), tests.native()}).err;
}

TEST(LengthsTest, OfOurFilesAndFunctionsAreWithinTheLimits) {
  EXPECT_THAT(complaintsAbout(KESTROVA_SOURCES, Path(KESTROVA_HOUSE).parent_path()), IsEmpty());
}

/// A function of `functionLines` lines, followed by `blankLines`.
std::string sumOf(int functionLines, int blankLines = 0) {
  std::string text = "int sum(int number) {\n";
  for (int line = 2; line < functionLines; ++line) text += "  number += 1;\n";
  return text + "}\n" + std::string(static_cast<std::size_t>(blankLines), '\n');
}

/// Writes one source and one test and measures them.
class PlantedLengthTest : public testing::Test {
 protected:
  std::string complaints(const std::string& source, const std::string& test) {
    writeFile(folder_ / "src/sum.cpp", source);
    writeFile(folder_ / "tests/sum_test.cpp", test);
    return complaintsAbout(folder_ / "src", folder_ / "tests");
  }

  TemporaryFolder folder_;
};

TEST_F(PlantedLengthTest, AtItsLimitIsFine) {
  const std::string atLimit = sumOf(functionLimit, fileLimit - functionLimit);
  EXPECT_THAT(complaints(atLimit, atLimit), IsEmpty());
}

TEST_F(PlantedLengthTest, OfAFunctionIsNamedBeyondTheLimit) {
  EXPECT_THAT(complaints(sumOf(functionLimit + 1), sumOf(functionLimit)),
              HasSubstr("sum.cpp:1: sum has 36 lines"));
}

TEST_F(PlantedLengthTest, OfAFileIsNamedBeyondTheLimit) {
  const std::string atLimit = sumOf(functionLimit, fileLimit - functionLimit);
  EXPECT_THAT(complaints(atLimit + '\n', atLimit), HasSubstr("sum.cpp has 301 lines"));
}

TEST_F(PlantedLengthTest, OfATestsFileIsNamedBeyondTheLimit) {
  const std::string atLimit = sumOf(functionLimit, fileLimit - functionLimit);
  EXPECT_THAT(complaints(atLimit, atLimit + '\n'), HasSubstr("sum_test.cpp has 301 lines"));
}

TEST_F(PlantedLengthTest, OfATestsFunctionIsNotMeasured) {
  EXPECT_THAT(complaints(sumOf(functionLimit), sumOf(functionLimit + 1)), IsEmpty());
}

}  // namespace
}  // namespace kestrova
