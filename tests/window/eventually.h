#pragma once

#include "support/patience.h"

#include <QTest>

namespace kestrova::test {

/// Long enough for the window to refresh its widgets several times, in milliseconds.
inline constexpr int severalFrames = 100;

/// Runs the event loop until the condition holds; false when it does not within our patience.
template <typename Condition>
bool eventually(Condition condition) {
  return QTest::qWaitFor(condition, static_cast<int>(patience.count()));
}

}  // namespace kestrova::test
