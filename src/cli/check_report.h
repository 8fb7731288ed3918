#pragma once

#include "report/check.h"
#include "report/rescue.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace kestrova::cli {

/// What a check, and the rescue after it, came to.
struct CheckOutcome {
  Path target;
  Path rescue = {};
  report::CheckResult check = {};
  std::optional<report::RescueResult> rescued = {};

  bool wasStopped() const { return check.wasStopped || (rescued && rescued->wasStopped); }
  /// Whether all that was missing is in the rescue folder now.
  bool isRescued() const;
  /// Whether the sources may be erased.
  bool isSafe() const { return !wasStopped() && (check.isSafe() || isRescued()); }
};

/// What is missing and what was left behind, for people; the last line says whether the sources may be
/// erased.
QString checkText(const CheckOutcome& outcome);

/// One JSON object on one line, in UTF-8.
QByteArray checkJson(const CheckOutcome& outcome);

/// One line for each file that could not be rescued.
QString rescueErrors(const CheckOutcome& outcome);

/// 0 safe, 1 not safe or not all rescued, 130 stopped.
int exitStatus(const CheckOutcome& outcome);

}  // namespace kestrova::cli
