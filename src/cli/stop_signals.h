#pragma once

#include <csignal>

namespace kestrova::cli {

/// Ctrl-C (SIGINT) and SIGTERM as something to ask for: both are held back from all threads that start after
/// this was made, so that they interrupt nothing. Make it on the main thread before any other thread.
class StopSignals {
 public:
  StopSignals();

  /// Whether one waits to be taken.
  bool isPending() const;
  /// Takes one, if one waits; never blocks.
  bool take();

 private:
  sigset_t signals_;
};

}  // namespace kestrova::cli
