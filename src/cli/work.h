#pragma once

#include "cli/progress.h"
#include "cli/stop_signals.h"
#include "report/content.h"
#include "report/work_progress.h"

#include <QString>
#include <utility>

namespace kestrova::cli {

/// Shows on standard error how far a piece of work is, and has it end on Ctrl-C or SIGTERM.
class Work {
 public:
  Work(const StopSignals& stop, QString status, Progress::Mode mode = Progress::modeOfStandardError())
      : stop_(stop), status_(std::move(status)), progress_(mode) {}

  /// Called by the work from time to time.
  report::Stopped stopped();
  report::ProgressListener listener();

 private:
  const StopSignals& stop_;
  QString status_;
  Progress progress_;
  Progress::Clock::time_point shown_;
  Progress::Clock::time_point asked_;
  bool isStopped_ = false;
};

}  // namespace kestrova::cli
