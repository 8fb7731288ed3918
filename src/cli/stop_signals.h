#pragma once

#include <csignal>

namespace kestrova::cli {

/// Ctrl-C (SIGINT) and SIGTERM as something to ask for: while this lives, both are held back from its thread
/// and from those that start meanwhile, so that they interrupt nothing. Main thread only; made before any
/// other thread.
class StopSignals {
 public:
  StopSignals();
  /// Drops what nobody took.
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  /// Whether one waits to be taken.
  bool isPending() const;
  /// Takes one, if one waits; never blocks.
  bool take();

 private:
  sigset_t signals_;
  sigset_t heldBefore_;
};

}  // namespace kestrova::cli
