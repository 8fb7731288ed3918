#include "platform/path_relation.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

TEST(PathRelation, TellsWhatLiesInsideAFolder) {
  EXPECT_TRUE(isInside("/a/b/c", "/a/b"));
  EXPECT_TRUE(isInside("/a/b/c", "/a/b/"));
  EXPECT_TRUE(isInside("/a/b", "/a/b"));
  EXPECT_TRUE(isInside("/a", "/"));
  EXPECT_FALSE(isInside("/a/bc", "/a/b"));
  EXPECT_FALSE(isInside("/a", "/a/b"));
}

TEST(PathRelation, ResolvesLinksAsFarAsThereAreFolders) {
  const test::TemporaryFolder folder;
  const std::filesystem::path real = std::filesystem::canonical(folder.path()) / "real";
  std::filesystem::create_directories(real);
  std::filesystem::create_symlink(real, folder / "link");
  EXPECT_EQ(resolvedPath(folder / "link/../link/new"), real / "new");
}

}  // namespace

}  // namespace kestrova
