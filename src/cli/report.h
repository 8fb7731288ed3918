#pragma once

#include "cli/verification.h"
#include "model/run_state.h"
#include "model/tally.h"
#include "report/left_behind.h"
#include "report/row.h"

#include <QString>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace kestrova::cli {

/// The result of a run.
struct Summary {
  RunEnd end = RunEnd::completed;
  QString status;  ///< the status line's last text
  std::chrono::milliseconds elapsed{};

  struct {
    Amount photos, videos, total;
  } found, written;     ///< `found` without duplicates
  Amount rewritten;     ///< of what is written, rewritten photos
  Amount duplicates;    ///< equal to the first file of their size
  Amount sameContent;   ///< equal to a later file of their size
  Amount alreadyThere;  ///< the target was there
  Amount small;         ///< left out by a filter
  Amount nameTaken;     ///< another file of the run has the target's name
  Amount failed;        ///< could not be written
  Amount unreadable;    ///< could not be read
  Amount notReached;
  report::LeftBehind leftBehind;                         ///< not of a kind that is organised
  std::vector<report::UnreadableRow> unreadableFolders;  ///< their contents are unknown
  std::int64_t sidecars = 0;            ///< left behind beside photos and videos that were found
  std::int64_t videosWithoutStill = 0;  ///< found, their stills left behind
  /// Of a dry run: what it would write, and what is free. In bytes.
  struct Space {
    std::uint64_t needed = 0;
    std::optional<std::uint64_t> free;
  };
  std::optional<Space> space;
  std::string recordFailure;                 ///< why the record is missing or not whole
  std::string reportFailure;                 ///< why the report is not whole
  Path record;                               ///< where the run is recorded; empty: nowhere
  std::optional<Verification> verification;  ///< where one was asked for
};

/// 0 completed, 1 ended in error or something could not be read or written, or is at risk, 130 stopped.
int exitStatus(const Summary& summary);

/// A table for people, ending with one line that says how the run ended.
QString summaryTable(const Summary& summary);

/// One JSON object on one line, in UTF-8.
QByteArray summaryJson(const Summary& summary);

/// One line for everything that could not be read or written, and one when the run ended in error.
QString errorLines(const Summary& summary, const std::vector<Tally::Remark>& remarks);

/// One line for every photo that was copied unchanged because it could not be rewritten.
QString noticeLines(const std::vector<Tally::Remark>& remarks);

}  // namespace kestrova::cli
