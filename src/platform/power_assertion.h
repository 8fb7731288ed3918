#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

namespace kestrova {

/// Keeps the display awake. Callable from any thread; no call waits for the desktop.
class PowerAssertions {
 public:
  virtual ~PowerAssertions() = default;

  /// Keeps the display from going to sleep until the returned identifier is released. Returns nothing if the
  /// host knows that it cannot do that.
  virtual std::optional<std::uint32_t> create(const QString& reason) = 0;
  /// Releases one assertion; an unknown identifier is ignored.
  virtual void release(std::uint32_t identifier) = 0;
};

std::shared_ptr<PowerAssertions> systemPowerAssertions();

}  // namespace kestrova
