#include "report/recorder.h"

#include "report/json_amount.h"
#include "report/run_folder.h"
#include "report/timestamps.h"

#include <system_error>
#include <utility>

namespace kestrova::report {

namespace {

std::int64_t signedSize(const std::optional<std::uint64_t>& size) {
  return static_cast<std::int64_t>(size.value_or(0));
}

// What is written counts with the size that it has in the target.
Amount amountOf(const FileRow& row) {
  return {1, signedSize(row.targetSize ? row.targetSize : row.sourceSize)};
}
Amount amountOf(const UnreadableRow&) { return {1, 0}; }
Amount amountOf(const LeftBehindRow& row) { return {1, signedSize(row.sourceSize)}; }

std::string_view wordOf(const FileRow& row) { return traitsOf(row.verdict).word; }
std::string_view wordOf(const UnreadableRow&) { return "unreadable-folders"; }
std::string_view wordOf(const LeftBehindRow&) { return "left-behind"; }

}  // namespace

FileResult<std::unique_ptr<Recorder>> Recorder::begin(const Path& runs, RunInfo info,
                                                      std::chrono::sys_seconds start) {
  const auto folder = createRunFolder(runs, start);
  if (!folder) return tl::make_unexpected(folder.error());
  info.started = utcText(start);
  std::unique_ptr<Recorder> recorder(new Recorder(systemFileManager(), *folder, std::move(info)));
  if (const auto created = recorder->createFiles(); !created) {
    std::error_code error;  // what cannot be removed stays
    std::filesystem::remove_all(*folder, error);
    return tl::make_unexpected(created.error());
  }
  removeOldRuns(runs);
  return recorder;
}

Recorder::Recorder(std::shared_ptr<FileManager> files, Path folder, RunInfo info)
    : files_(std::move(files)), folder_(std::move(folder)), info_(std::move(info)) {}

FileResult<void> Recorder::createFiles() {
  const MutexLock lock(mutex_);
  auto rows = RowFile::create(rowsFile(folder_), RowFile::Format::ndjson);
  if (!rows) return tl::make_unexpected(rows.error());
  rows_ = *std::move(rows);
  return writeRunInfo(*files_, folder_, info_);
}

void Recorder::add(const Row& row) {
  const MutexLock lock(mutex_);
  if (!rows_) return;
  rows_->add(row);
  count(row);
}

void Recorder::end(std::string_view result, std::chrono::sys_seconds time) {
  const MutexLock lock(mutex_);
  if (!rows_) return;
  rows_->flush();
  error_ = rows_->error();
  rows_.reset();
  info_.ended = utcText(time);
  info_.result = result;
  info_.counts = counts();
  if (error_) info_.recordError = error_->message;
  if (const auto written = writeRunInfo(*files_, folder_, info_); !written && !error_)
    error_ = written.error();
}

std::optional<FileError> Recorder::error() const {
  const MutexLock lock(mutex_);
  return rows_ ? rows_->error() : error_;
}

void Recorder::count(const Row& row) {
  const auto [word, amount] =
      std::visit([](const auto& kind) { return std::pair(wordOf(kind), amountOf(kind)); }, row);
  counts_[word] += amount;
}

QJsonObject Recorder::counts() const {
  QJsonObject object;
  for (const auto& [word, amount] : counts_) {
    object.insert(QLatin1String(word.data(), static_cast<qsizetype>(word.size())), jsonOf(amount));
  }
  return object;
}

}  // namespace kestrova::report
