#include "platform/machine.h"

#include "platform/file_system.h"
#include "platform/long_path.h"

#include <algorithm>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace kestrova {

std::size_t coreCount() { return std::max(1U, std::thread::hardware_concurrency()); }

std::uint64_t memorySize() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize)
                                   : 0;
}

std::size_t openFileLimit() {
  rlimit limit = {};
  return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
}

bool isOnRemoteVolume(const Path& folder) {
  const auto place = openPlace(folder);
  if (place) return host::volumeOf(place->get()).isRemote;
  const Path above = folder.parent_path();
  return place.error().kind == FileError::Kind::notFound && above != folder && isOnRemoteVolume(above);
}

}  // namespace kestrova
