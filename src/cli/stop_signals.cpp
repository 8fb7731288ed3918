#include "cli/stop_signals.h"

#include <initializer_list>

namespace kestrova::cli {

// A signal that is ignored, as in a shell's background jobs, would never become pending.
StopSignals::StopSignals() {
  sigemptyset(&signals_);
  for (const int number : {SIGINT, SIGTERM}) {
    std::signal(number, SIG_DFL);
    sigaddset(&signals_, number);
  }
  pthread_sigmask(SIG_BLOCK, &signals_, &heldBefore_);
}

StopSignals::~StopSignals() {
  while (take()) {
  }
  pthread_sigmask(SIG_SETMASK, &heldBefore_, nullptr);
}

bool StopSignals::isPending() const {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGTERM) == 1;
}

bool StopSignals::take() {
  int number = 0;
  return isPending() && sigwait(&signals_, &number) == 0;
}

}  // namespace kestrova::cli
