#include "report/row_file.h"

#include "report/csv_line.h"

#include <chrono>
#include <utility>

namespace kestrova::report {

namespace {

constexpr auto longestWait = std::chrono::milliseconds(200);
constexpr std::size_t mostCollected = std::size_t{64} * 1024;  ///< bytes

}  // namespace

std::optional<RowFile::Format> RowFile::formatOf(const Path& file) {
  const Path extension = file.extension();
  if (extension == ".ndjson") return Format::ndjson;
  if (extension == ".csv") return Format::csv;
  return std::nullopt;
}

FileResult<std::unique_ptr<RowFile>> RowFile::create(const Path& file, Format format) {
  auto created = AppendFile::create(file);
  if (!created) return tl::make_unexpected(created.error());
  if (format == Format::csv) {
    if (auto begun = created->append(csvHeader()); !begun) return tl::make_unexpected(begun.error());
  }
  return std::unique_ptr<RowFile>(new RowFile(*std::move(created), format));
}

RowFile::RowFile(AppendFile file, Format format) : format_(format), file_(std::move(file)) {
  writer_ = std::thread([this] { writeFromTimeToTime(); });
}

RowFile::~RowFile() {
  {
    const MutexLock lock(mutex_);
    isEnding_ = true;
    changed_.notifyAll();
  }
  writer_.join();
}

void RowFile::add(const Row& row) {
  const std::string line = format_ == Format::csv ? csvLineOf(row) : lineOf(row);
  const MutexLock lock(mutex_);
  if (error_) return;
  if (collected_.empty()) changed_.notifyAll();
  collected_ += line;
  if (collected_.size() >= mostCollected) write();
}

void RowFile::flush() {
  const MutexLock lock(mutex_);
  write();
}

std::optional<FileError> RowFile::error() const {
  const MutexLock lock(mutex_);
  return error_;
}

void RowFile::writeFromTimeToTime() {
  const MutexLock lock(mutex_);
  while (!isEnding_) {
    if (collected_.empty()) {
      changed_.wait(mutex_);
      continue;
    }
    const auto due = std::chrono::steady_clock::now() + longestWait;
    while (!isEnding_ && changed_.waitUntil(mutex_, due)) {
    }
    write();
  }
  write();
}

void RowFile::write() {
  if (!error_ && !collected_.empty()) {
    if (const auto written = file_.append(collected_); !written) error_ = written.error();
  }
  collected_.clear();
}

}  // namespace kestrova::report
