#include "platform/process_start.h"

#include <algorithm>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kestrova {

namespace {

/// A new descriptor gets the lowest number that is free.
void openMissingStandardDescriptors() {
  int opened = 0;
  while (opened >= 0 && opened <= STDERR_FILENO) opened = ::open("/dev/null", O_RDWR);
  if (opened >= 0) ::close(opened);
}

/// The usual limit is low for the sake of programs that wait with select().
void raiseOpenFileLimit() {
  constexpr rlim_t enough = 8192;
  rlimit limit = {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough) return;
  limit.rlim_cur = std::min(limit.rlim_max, enough);
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

void prepareProcess() {
  openMissingStandardDescriptors();
  raiseOpenFileLimit();
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace kestrova
