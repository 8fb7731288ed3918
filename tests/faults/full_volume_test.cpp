#include "platform/file_manager.h"
#include "support/small_volume.h"
#include "support/temporary_folder.h"

#include <cerrno>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t volumeSize = 1024 * 1024;

std::uintmax_t freeBytes(const Path& folder) { return fs::space(folder).free; }

void expectFull(const FileResult<void>& result) {
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().kind, FileError::Kind::noSpace);
  EXPECT_EQ(result.error().message, std::strerror(ENOSPC));
}

class FullVolume : public testing::TestWithParam<Staging> {
 protected:
  const std::shared_ptr<FileManager> files = systemFileManager(GetParam());
};

INSTANTIATE_TEST_SUITE_P(BothWays, FullVolume, testing::Values(Staging::unseen, Staging::underTemporaryName),
                         [](const auto& way) {
                           return way.param == Staging::unseen ? "Unseen" : "UnderATemporaryName";
                         });

}  // namespace

TEST_P(FullVolume, EndsACopyAndLeavesNothing) {
  const test::TemporaryFolder source;
  const Path from = test::writeFile(source / "from", std::string(2 * volumeSize, 'x'));
  const bool isAllowed = test::withSmallVolume(volumeSize, [&](const Path& volume) {
    const auto before = freeBytes(volume);
    expectFull(files->copyItem(from, volume / "to"));
    EXPECT_TRUE(fs::is_empty(volume));
    EXPECT_EQ(freeBytes(volume), before);
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

TEST_P(FullVolume, EndsAWriteAndLeavesNothing) {
  const Bytes data(2 * volumeSize);
  const bool isAllowed = test::withSmallVolume(volumeSize, [&](const Path& volume) {
    const auto before = freeBytes(volume);
    expectFull(files->writeData(data, volume / "to"));
    expectFull(files->writeDataReplacing(data, volume / "to"));
    EXPECT_TRUE(fs::is_empty(volume));
    EXPECT_EQ(freeBytes(volume), before);
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

TEST_P(FullVolume, KeepsTheFileThatWasToBeReplaced) {
  const bool isAllowed = test::withSmallVolume(volumeSize, [&](const Path& volume) {
    test::writeFile(volume / "to", "old");
    expectFull(files->writeDataReplacing(Bytes(2 * volumeSize), volume / "to"));
    EXPECT_EQ(test::readFile(volume / "to"), "old");
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

TEST_P(FullVolume, TakesTheNextFileOnceThereIsRoomAgain) {
  const bool isAllowed = test::withSmallVolume(volumeSize, [&](const Path& volume) {
    const Path filler = test::writeFile(volume / "filler", std::string(volumeSize - 8192, 'x'));
    const Bytes data(volumeSize / 2);
    expectFull(files->writeData(data, volume / "to"));
    fs::remove(filler);
    EXPECT_TRUE(files->writeData(data, volume / "to"));
    EXPECT_EQ(fs::file_size(volume / "to"), data.size());
  });
  if (!isAllowed) GTEST_SKIP() << "mounting is not allowed here";
}

}  // namespace kestrova
