#include "platform/copy_file.h"

#include "platform/file_error.h"
#include "support/file_results.h"
#include "support/small_volume.h"
#include "support/temporary_folder.h"

#include <cerrno>
#include <chrono>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

// A source that changes while it is copied, and one that never ends.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::codeOf;

void overwrite(const Path& path, std::string_view text) {
  std::fstream(path, std::ios::in | std::ios::out | std::ios::binary) << text;
}

}  // namespace

TEST(CopyFile, NoticesASourceThatIsWrittenDuringTheCopy) {
  const test::TemporaryFolder root;
  const Path path = test::writeFile(root / "from", "old bytes");
  const auto source = openRegularFile(path);
  ASSERT_TRUE(source);
  EXPECT_EQ(codeOf(checkUnchanged(*source)), 0);
  overwrite(path, "new");
  EXPECT_EQ(codeOf(checkUnchanged(*source)), EBUSY);
}

TEST(CopyFile, NoticesAWriterThatPutsTheModificationTimeBack) {
  const test::TemporaryFolder root;
  const Path path = test::writeFile(root / "from", "old bytes");
  const auto source = openRegularFile(path);
  ASSERT_TRUE(source);
  // The clock that stamps files moves in steps.
  for (int attempt = 0; attempt < 1000 && checkUnchanged(*source); ++attempt) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    overwrite(path, "new");
    const timespec times[2] = {source->status.st_atim, source->status.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  struct stat now = {};
  ASSERT_EQ(::stat(path.c_str(), &now), 0);
  EXPECT_EQ(now.st_mtim.tv_nsec, source->status.st_mtim.tv_nsec);
  const auto unchanged = checkUnchanged(*source);
  ASSERT_FALSE(unchanged);
  EXPECT_EQ(unchanged.error().message, "the file changed while it was read");
}

TEST(CopyFile, EndsAtASourceThatHasMoreBytesThanItSays) {
  if (!fs::exists("/proc/self/pagemap")) GTEST_SKIP() << "no endless file here";
  const bool isAllowed = test::withSmallVolume(std::size_t{1024} * 1024, [](const Path& volume) {
    fs::create_symlink("/proc/self/pagemap", volume / "link.jpg");
    const auto copied = systemFileManager()->copyItem(volume / "link.jpg", volume / "to.jpg");
    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.error().code, EBUSY);
    EXPECT_FALSE(fs::exists(volume / "to.jpg"));
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

}  // namespace kestrova
