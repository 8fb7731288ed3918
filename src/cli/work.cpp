#include "cli/work.h"

namespace kestrova::cli {

namespace {

constexpr auto refreshInterval = std::chrono::milliseconds(100);

}  // namespace

report::ProgressListener Work::listener() {
  return [this](const report::WorkProgress& work) {
    const auto now = Progress::Clock::now();
    if (now - shown_ < refreshInterval) return;
    shown_ = now;
    progress_.show(
        {.phase = RunPhase::executing, .status = status_, .found = work.total, .settled = work.done});
  };
}

}  // namespace kestrova::cli
