#pragma once

#include "cli/progress.h"
#include "cli/stop_signals.h"
#include "report/verify.h"

#include <QString>
#include <string>

namespace kestrova::cli {

struct VerificationTask {
  const StopSignals& stop;
  Progress::Mode mode = Progress::Mode::silent;
  report::RowSource rows;
  Path target;          ///< of the run
  Path record = {};     ///< its folder; its rows get what is found; empty: there is none
  Path report = {};     ///< the same of a report; empty: there is none
  Path checksums = {};  ///< where the sums go; empty: nowhere
};

struct Verification {
  report::VerifyResult result;
  std::string failure;  ///< why it, or what it writes, is not whole; in English, in UTF-8
};

/// Verifies a run and writes down what was found. Shows how far it is; ends on Ctrl-C.
Verification verify(const VerificationTask& task, std::shared_ptr<FileManager> files);

/// One line for each file at risk: why, and what to do.
QString riskLines(const Verification& verification);

}  // namespace kestrova::cli
