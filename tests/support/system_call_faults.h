#pragma once

#include <functional>
#include <vector>

namespace kestrova::test {

/// A system call, by its number, and the error it fails with.
struct FailingCall {
  int number = 0;
  int error = 0;
};

/// Runs `work` on a thread of its own, on which these calls fail at once. False, without running anything, if
/// the system does not permit this.
bool withFailingCalls(const std::vector<FailingCall>& calls, const std::function<void()>& work);

/// Runs `work` on a thread of its own, on which these calls are interrupted every other time, beginning with
/// the first, as by a signal. Returns how many were; -1, without running anything, if the system does not
/// permit this.
int withInterruptedCalls(const std::vector<int>& numbers, const std::function<void()>& work);

}  // namespace kestrova::test
