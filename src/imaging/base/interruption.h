#pragma once

#include <exception>
#include <functional>

namespace kestrova::imaging {

/// Says whether to give up a photo that is being rewritten. It is asked again and again, at least once for
/// every 64 rows or million pixels of each step, by the thread that does the work. It must be cheap and must
/// not throw. Empty means that nothing interrupts the work.
using Stopped = std::function<bool()>;

/// Thrown when work was given up. Not an ImageError: nothing is wrong with the photo.
class Interrupted : public std::exception {
 public:
  const char* what() const noexcept override { return "interrupted"; }
};

inline void throwIfStopped(const Stopped& stopped) {
  if (stopped && stopped()) throw Interrupted();
}

}  // namespace kestrova::imaging
