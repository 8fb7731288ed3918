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

/// What is too long below a folder; empty when nothing is.
std::string complaintsAbout(const Path& sources) {
  return runProcess({KESTROVA_HOUSE "/lengths.sh", sources.native()}).err;
}

TEST(LengthsTest, OfOurSourcesAreWithinTheLimits) {
  EXPECT_THAT(complaintsAbout(KESTROVA_SOURCES), IsEmpty());
}

/// Writes a function of so many lines with a file around it and measures them.
class PlantedLengthTest : public testing::Test {
 protected:
  std::string complaints(int functionLines, int blankLines) {
    std::string text = "int sum(int number) {\n";
    for (int line = 2; line < functionLines; ++line) text += "  number += 1;\n";
    text += "}\n" + std::string(static_cast<std::size_t>(blankLines), '\n');
    writeFile(sources_ / "sum.cpp", text);
    return complaintsAbout(sources_.path());
  }

  TemporaryFolder sources_;
};

TEST_F(PlantedLengthTest, AtItsLimitIsFine) {
  EXPECT_THAT(complaints(functionLimit, fileLimit - functionLimit), IsEmpty());
}

TEST_F(PlantedLengthTest, OfAFunctionIsNamedBeyondTheLimit) {
  EXPECT_THAT(complaints(functionLimit + 1, 0), HasSubstr("sum.cpp:1: sum has 36 lines"));
}

TEST_F(PlantedLengthTest, OfAFileIsNamedBeyondTheLimit) {
  EXPECT_THAT(complaints(functionLimit, fileLimit - functionLimit + 1), HasSubstr("sum.cpp has 301 lines"));
}

}  // namespace
}  // namespace kestrova
