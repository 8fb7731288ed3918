#pragma once

#include <QTest>

namespace kestrova::test {

/// How long a test waits for what has to come, in milliseconds: so long that only a fault lets it pass.
inline constexpr int patience = 60'000;

/// Runs the event loop until the condition holds; false when it does not in all the time there is.
template <typename Condition>
bool eventually(Condition condition) {
  return QTest::qWaitFor(condition, patience);
}

}  // namespace kestrova::test
