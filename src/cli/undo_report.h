#pragma once

#include "report/undo.h"

#include <QByteArray>
#include <QString>
#include <string>

namespace kestrova::cli {

/// What an undo came to.
struct UndoOutcome {
  std::string run;
  bool isDryRun = false;
  bool deletes = false;
  report::UndoResult result;
};

/// One line: how much was taken back, and of which run.
QString undoText(const UndoOutcome& outcome);

/// One JSON object on one line, in UTF-8.
QByteArray undoJson(const UndoOutcome& outcome);

/// One line for each file that stays, with the reason.
QString refusalLines(const UndoOutcome& outcome);

/// 0 all taken back, 1 something stays, 130 stopped.
int exitStatus(const UndoOutcome& outcome);

}  // namespace kestrova::cli
