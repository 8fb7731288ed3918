#include "cli/rescue.h"

#include "cli/output.h"
#include "cli/work.h"
#include "report/recorder.h"
#include "report/run_folder.h"
#include "report/timestamps.h"

#include <QCoreApplication>
#include <memory>
#include <utility>

namespace kestrova::cli {

namespace {

/// What cannot be recorded is rescued all the same.
std::unique_ptr<report::Recorder> beginRecord(const RescueTask& task) {
  const auto runs = report::runsFolder();
  if (!runs) return nullptr;
  report::RunInfo info{.version = QCoreApplication::applicationVersion().toStdString(),
                       .command = "rescue",
                       .options = {},
                       .sources = task.sources,
                       .target = task.folder,
                       .counts = {}};
  auto recorder = report::Recorder::begin(*runs, std::move(info), report::currentSecond());
  if (recorder) return *std::move(recorder);
  print(stderr, "kestrova-cli: the rescue is not recorded: " + recorder.error().message + "\n");
  return nullptr;
}

std::string_view wordOf(const report::RescueResult& result) {
  if (result.wasStopped) return "stopped";
  return result.failed.empty() ? "completed" : "failed";
}

}  // namespace

report::RescueResult rescue(const RescueTask& task, FileManager& files, const StopSignals& stop) {
  const auto recorder = beginRecord(task);
  Work work(stop, QStringLiteral("Rescuing"));
  report::RescueRequest request{.sources = task.sources, .files = task.files, .folder = task.folder};
  request.record = [&](const report::FileRow& row) {
    if (recorder) recorder->add(row);
  };
  request.stopped = work.stopped();
  request.progress = work.listener();
  auto result = report::rescueFiles(request, files);
  if (recorder) recorder->end(wordOf(result), report::currentSecond());
  return result;
}

}  // namespace kestrova::cli
