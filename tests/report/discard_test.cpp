#include "report/discard.h"

#include "support/environment_variable.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using test::writeFile;
using testing::HasSubstr;

struct Discard : testing::Test {
  test::TemporaryFolder folder;
  Path data = folder / "new/data";
  test::EnvironmentVariable dataHome{"XDG_DATA_HOME", data.c_str()};
  Path file = writeFile(folder / "photos/1.jpg", "photo");
};

TEST_F(Discard, MovesIntoTheTrashOfAUserWhoHadNone) {
  const auto moved = moveToTrash(file);
  ASSERT_TRUE(moved) << moved.error().message;
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(test::readFile(data / "Trash/files/1.jpg"), "photo");
  EXPECT_THAT(test::readFile(data / "Trash/info/1.jpg.trashinfo"), HasSubstr("photos/1.jpg"));
}

TEST_F(Discard, KeepsEveryFileOfOneName) {
  ASSERT_TRUE(moveToTrash(file));
  ASSERT_TRUE(moveToTrash(writeFile(file, "another")));
  EXPECT_EQ(test::filesBelow(data / "Trash/files").size(), 2U);
}

TEST_F(Discard, LeavesTheFileWhereThereIsNoTrash) {
  writeFile(folder / "new", "in the way");
  const auto moved = moveToTrash(file);
  ASSERT_FALSE(moved);
  EXPECT_THAT(moved.error().message, HasSubstr("there is no trash"));
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(Discard, RefusesANameThatTheTrashCouldNotGiveBack) {
  const Path odd = writeFile(folder / "\xFF.jpg", "photo");
  ASSERT_FALSE(moveToTrash(odd));
  EXPECT_TRUE(fs::exists(odd));
  EXPECT_TRUE(deleteFile(odd));
  EXPECT_FALSE(fs::exists(odd));
}

}  // namespace

}  // namespace kestrova::report
