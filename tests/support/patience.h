#pragma once

#include <chrono>

namespace kestrova::test {

/// How long a test waits for an expected event: so long that only a bug uses it up.
inline constexpr std::chrono::milliseconds patience = std::chrono::minutes(2);

}  // namespace kestrova::test
