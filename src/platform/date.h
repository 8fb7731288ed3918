#pragma once

#include <chrono>
#include <compare>
#include <cstdint>

namespace kestrova {

/// An instant in UTC. Can hold every time that a file or the clock can have.
struct Date {
  std::int64_t seconds = 0;      ///< whole seconds since 1970, rounded down
  std::int32_t nanoseconds = 0;  ///< after those, 0 to 999,999,999, also before 1970

  auto operator<=>(const Date&) const = default;
};

inline Date currentDate() {
  const auto now = std::chrono::system_clock::now();
  const auto whole = std::chrono::floor<std::chrono::seconds>(now);
  const std::chrono::nanoseconds rest = now - whole;
  return {whole.time_since_epoch().count(), static_cast<std::int32_t>(rest.count())};
}

}  // namespace kestrova
