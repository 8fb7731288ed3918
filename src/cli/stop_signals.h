#pragma once

#include <csignal>

namespace kestrova::cli {

/// Ctrl-C (SIGINT) and SIGTERM, to be polled: while this object exists, both are blocked in its thread and in
/// the threads started after it, so that they interrupt nothing. Main thread only; create it before any other
/// thread.
class StopSignals {
 public:
  StopSignals();
  /// Discards signals that nobody took.
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  /// Whether a signal is pending.
  bool isPending() const;
  /// Takes a pending signal, if any; never blocks.
  bool take();

 private:
  sigset_t signals_;
  sigset_t heldBefore_;
};

}  // namespace kestrova::cli
