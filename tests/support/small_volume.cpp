#include "support/small_volume.h"

#include "support/temporary_folder.h"

#include <string>
#include <thread>

#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#endif

namespace kestrova::test {

#ifdef __linux__

bool withSmallVolume(std::size_t bytes, const std::function<void(const Path& folder)>& work) {
  const TemporaryFolder place;
  bool isMounted = false;
  // A thread's own mounts disappear when it ends.
  std::thread([&] {
    const std::string options = "size=" + std::to_string(bytes);
    isMounted = ::unshare(CLONE_NEWNS) == 0 &&
                ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                ::mount("none", place.path().c_str(), "tmpfs", 0, options.c_str()) == 0;
    if (isMounted) work(place.path());
  }).join();
  return isMounted;
}

#else

bool withSmallVolume(std::size_t, const std::function<void(const Path& folder)>&) { return false; }

#endif

}  // namespace kestrova::test
