#include "cli/undo.h"

#include "cli/output.h"
#include "cli/undo_report.h"
#include "cli/work.h"
#include "platform/append_file.h"
#include "report/discard.h"
#include "report/run_folder.h"
#include "report/run_info.h"
#include "report/timestamps.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kestrova::cli {

namespace {

/// A record, or why there is none that can be taken back.
using ChosenRun = tl::expected<report::RunInfo, std::string>;

ChosenRun lastRun(const Path& runs, const FileManager& files) {
  for (const std::string& id : report::runIds(runs)) {
    auto info = report::readRunInfo(files, runs / id);
    if (info && info->takenBack.empty()) return *std::move(info);
  }
  return tl::unexpected(std::string("there is no record of a run that could be taken back"));
}

ChosenRun namedRun(const Path& runs, const std::string& id, const FileManager& files) {
  const auto ids = report::runIds(runs);
  auto info = std::ranges::find(ids, id) == ids.end() ? std::nullopt : report::readRunInfo(files, runs / id);
  if (!info) return tl::unexpected("there is no record of a run " + cli::quoted(id));
  return *std::move(info);
}

ChosenRun chooseRun(const UndoArguments& arguments, const Path& runs, const FileManager& files) {
  auto chosen = arguments.run.empty() ? lastRun(runs, files) : namedRun(runs, arguments.run, files);
  if (!chosen) return chosen;
  if (isBeingWritten(report::rowsFile(runs / chosen->id)))
    return tl::unexpected("the run " + chosen->id + " is still going on");
  if (!files.isDirectory(chosen->target))
    return tl::unexpected("the target of the run " + chosen->id +
                          " is not there: " + cli::quoted(chosen->target.native()));
  return chosen;
}

FileResult<void> moveToTrash(const Path& file) {
  auto moved = report::moveToTrash(file);
  if (!moved) moved.error().message += "; --delete deletes it for good";
  return moved;
}

FileResult<report::UndoResult> undo(const UndoArguments& arguments, const Path& run, const Path& target,
                                    const FileManager& files) {
  const StopSignals stop;
  Work work(stop, QStringLiteral("Taking back"));
  report::UndoRequest request{.rows = report::rowsFile(run), .target = target, .discard = {}};
  request.discard = arguments.deletes ? report::deleteFile : moveToTrash;
  request.isDryRun = arguments.isDryRun;
  request.stopped = work.stopped();
  request.progress = work.listener();
  return report::undoRun(request, files);
}

/// Nothing of the run is left, so that the next undo goes to the one before.
bool isTakenBackWhole(const UndoOutcome& outcome) {
  const auto& result = outcome.result;
  const bool foundNothing = result.removed == 0 && result.alreadyGone > 0;  // a volume that is not mounted?
  return !outcome.isDryRun && !result.wasStopped && result.refused.empty() && !foundNothing;
}

}  // namespace

tl::expected<UndoArguments, std::string> parseUndo(Words words, const Path& currentFolder) {
  UndoArguments arguments;
  OptionParser parser(currentFolder);
  parser.operand(arguments.run);
  parser.flag("--dry-run", arguments.isDryRun);
  parser.flag("--delete", arguments.deletes);
  parser.flag("--json", arguments.json);
  if (const Step parsed = parser.parse(words); !parsed) return tl::unexpected(parsed.error());
  return arguments;
}

int run(const UndoArguments& arguments) {
  const auto files = systemFileManager();
  const auto runs = report::runsFolder();
  if (!runs) return refuse("the environment names no folder where records are kept");
  auto info = chooseRun(arguments, *runs, *files);
  if (!info) return refuse(info.error());

  const auto undone = undo(arguments, *runs / info->id, info->target, *files);
  if (!undone) {
    print(stderr, "kestrova-cli: the record of the run " + info->id +
                      " cannot be read: " + undone.error().message + "\n");
    return 1;
  }
  const UndoOutcome outcome{
      .run = info->id, .isDryRun = arguments.isDryRun, .deletes = arguments.deletes, .result = *undone};
  if (isTakenBackWhole(outcome)) {
    info->takenBack = report::utcText(report::currentSecond());
    [[maybe_unused]] const auto noted = writeRunInfo(*files, *runs / info->id, *info);
  }
  print(stdout, arguments.json ? undoJson(outcome).toStdString() : undoText(outcome).toStdString());
  print(stderr, refusalLines(outcome).toStdString());
  return exitStatus(outcome);
}

}  // namespace kestrova::cli
