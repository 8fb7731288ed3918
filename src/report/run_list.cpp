#include "report/run_list.h"

#include "platform/append_file.h"
#include "report/json_amount.h"
#include "report/row.h"
#include "report/run_folder.h"

#include <utility>

namespace kestrova::report {

namespace {

bool isWritten(Outcome verdict) {
  return verdict == Outcome::copied || verdict == Outcome::resized || verdict == Outcome::rewritten;
}

Amount writtenByCounts(const QJsonObject& counts) {
  Amount sum;
  for (const Outcome verdict : {Outcome::copied, Outcome::resized, Outcome::rewritten}) {
    const std::string_view word = traitsOf(verdict).word;
    const QLatin1String key(word.data(), static_cast<qsizetype>(word.size()));
    sum += amountOf(counts.value(key).toObject());
  }
  return sum;
}

// As far as they can be read.
Amount writtenByRows(const Path& rows) {
  Amount sum;
  [[maybe_unused]] const auto read = readRows(rows, [&sum](const Row& row) {
    const auto* file = std::get_if<FileRow>(&row);
    if (file != nullptr && isWritten(file->verdict))
      sum += {1, static_cast<std::int64_t>(file->targetSize.value_or(0))};
    return true;
  });
  return sum;
}

}  // namespace

std::vector<RecordedRun> recordedRuns(const Path& runs, const FileManager& files) {
  std::vector<RecordedRun> list;
  for (const std::string& id : runIds(runs)) {
    const Path run = runs / id;
    auto info = readRunInfo(files, run);
    if (!info) continue;
    const bool hasEnded = !info->ended.empty();
    list.push_back({.info = std::move(*info), .isGoingOn = !hasEnded && isBeingWritten(rowsFile(run))});
    list.back().written = hasEnded ? writtenByCounts(list.back().info.counts) : writtenByRows(rowsFile(run));
  }
  return list;
}

}  // namespace kestrova::report
