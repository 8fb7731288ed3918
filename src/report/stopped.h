#pragma once

#include <functional>

namespace kestrova::report {

/// Asked by long work between files and between pieces of a file; true ends the work.
using Stopped = std::function<bool()>;

inline bool isStopped(const Stopped& stopped) { return stopped && stopped(); }

/// The same for work that stays stopped once it was: `wasStopped` remembers that.
inline bool isStopped(const Stopped& stopped, bool& wasStopped) {
  return wasStopped = wasStopped || isStopped(stopped);
}

}  // namespace kestrova::report
