#include "cli/work.h"

namespace kestrova::cli {

namespace {

constexpr auto refreshInterval = std::chrono::milliseconds(100);
constexpr auto askInterval = std::chrono::milliseconds(10);

}  // namespace

// The work asks before every file; the system is asked less often.
report::Stopped Work::stopped() {
  return [this] {
    const auto now = Progress::Clock::now();
    if (isStopped_ || now - asked_ < askInterval) return isStopped_;
    asked_ = now;
    return isStopped_ = stop_.isPending();
  };
}

report::ProgressListener Work::listener() {
  return [this](const report::WorkProgress& work) {
    const auto now = Progress::Clock::now();
    if (now - shown_ < refreshInterval) return;
    shown_ = now;
    if (work.total.files == 0) {
      progress_.show({.phase = RunPhase::scanning, .status = QStringLiteral("Listing"), .found = work.done});
    } else {
      progress_.show(
          {.phase = RunPhase::executing, .status = status_, .found = work.total, .settled = work.done});
    }
  };
}

}  // namespace kestrova::cli
