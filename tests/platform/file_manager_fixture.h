#pragma once

#include "platform/file_manager.h"
#include "support/file_results.h"
#include "support/temporary_folder.h"
#include "support/text_bytes.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

// What the tests of copying and writing share.

namespace kestrova::test {

inline constexpr mode_t everyMode[] = {0400, 0444, 0600, 0640, 0755};

/// The status of the item itself, not of a link's target.
inline struct stat statusOf(const Path& path) {
  struct stat status = {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status;
}

/// A test that runs for both ways in which a file can wait for its name.
class FileManagerTest : public testing::TestWithParam<Staging> {
 protected:
  const std::shared_ptr<FileManager> files = systemFileManager(GetParam());
  const TemporaryFolder folder;
};

inline const auto bothWays = testing::Values(Staging::unseen, Staging::underTemporaryName);

inline std::string wayName(const testing::TestParamInfo<Staging>& way) {
  return way.param == Staging::unseen ? "Unseen" : "UnderATemporaryName";
}

}  // namespace kestrova::test
