#include "platform/process_start.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace kestrova {

namespace {

/// A new descriptor gets the lowest number that is free.
void openMissingStandardDescriptors() {
  int opened = 0;
  while (opened >= 0 && opened <= STDERR_FILENO) opened = ::open("/dev/null", O_RDWR);
  if (opened >= 0) ::close(opened);
}

}  // namespace

void prepareProcess() {
  openMissingStandardDescriptors();
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace kestrova
