#include "platform/append_file.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

TEST(AppendFile, GrowsAndIsPrivate) {
  const test::TemporaryFolder folder;
  auto file = AppendFile::create(folder / "rows");
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->append("one\n"));
  ASSERT_TRUE(file->append("two\n"));
  EXPECT_EQ(test::readFile(folder / "rows"), "one\ntwo\n");
  EXPECT_EQ(std::filesystem::status(folder / "rows").permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(AppendFile, NeverTakesAnotherFilesPlace) {
  const test::TemporaryFolder folder;
  test::writeFile(folder / "rows", "precious");
  EXPECT_EQ(AppendFile::create(folder / "rows").error().code, EEXIST);
  EXPECT_EQ(test::readFile(folder / "rows"), "precious");
}

TEST(AppendFile, TellsWhetherItIsStillBeingWritten) {
  const test::TemporaryFolder folder;
  {
    const auto file = AppendFile::create(folder / "rows");
    EXPECT_TRUE(isBeingWritten(folder / "rows"));
  }
  EXPECT_FALSE(isBeingWritten(folder / "rows"));
  EXPECT_FALSE(isBeingWritten(folder / "missing"));
}

}  // namespace

}  // namespace kestrova
