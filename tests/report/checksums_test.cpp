#include "report/checksums.h"

#include "report/content.h"
#include "support/process.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace kestrova::report {

namespace {

TEST(Checksums, AreLinesOfSumAndName) {
  EXPECT_EQ(checksumLine("ab", "2014/a b.jpg"), "ab  2014/a b.jpg\n");
  EXPECT_EQ(checksumLine("ab", "back\\slash"), "\\ab  back\\\\slash\n");
  EXPECT_EQ(checksumLine("ab", "new\nline"), "\\ab  new\\nline\n");
}

TEST(Checksums, AreAcceptedWhateverTheNames) {
  const test::TemporaryFolder folder;
  std::string lines;
  for (const char* name :
       {"2014/a b.jpg", "back\\slash", "new\nline", "\\n", "\xFF.jpg", " *x", "a\tb", "it's"}) {
    lines += checksumLine(sha256Of(test::writeFile(folder / name, name)).value(), name);
  }
  test::writeFile(folder / "sums", lines);
  const auto result =
      test::runProcess({"sha256sum", "--check", "--strict", "sums"}, {.currentFolder = folder.path()});
  EXPECT_EQ(result.status, 0) << result.out << result.err;
}

}  // namespace

}  // namespace kestrova::report
