#pragma once

#include <chrono>

namespace kestrova::test {

/// How long a test waits for what has to come: so long that only a fault uses it up.
inline constexpr std::chrono::milliseconds patience = std::chrono::minutes(2);

}  // namespace kestrova::test
