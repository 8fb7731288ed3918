#include "execution/work_limits.h"

#include "platform/machine.h"

#include <algorithm>

namespace kestrova {

namespace {

constexpr std::size_t mostUsualJobs = 8;
constexpr std::uint64_t mostBytes = std::uint64_t{1024} * 1024 * 1024;
constexpr std::size_t mostFiles = 2048;

}  // namespace

std::size_t usualJobs(const std::vector<Path>& sources, const Path& target) {
  const bool isRemote = isOnRemoteVolume(target) || std::ranges::any_of(sources, isOnRemoteVolume);
  return isRemote ? mostUsualJobs : std::min(coreCount(), mostUsualJobs);
}

WorkAhead::Limits workLimits(std::size_t jobs) {
  return {.threads = jobs,
          .photos = std::min(jobs, coreCount()),
          .files = std::min(openFileLimit() / 2, mostFiles),
          .bytes = std::min(memorySize() / 4, mostBytes)};
}

}  // namespace kestrova
