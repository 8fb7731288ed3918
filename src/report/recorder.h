#pragma once

#include "model/amount.h"
#include "platform/mutex.h"
#include "report/row_file.h"
#include "report/run_info.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

namespace kestrova::report {

/// Writes the record of a run while the run goes on. Nothing that fails here is to end the run: the record
/// then ends early, and the record states that if it still can. Callable from any thread.
class Recorder {
 public:
  /// Begins a record in a folder of its own below `runs`, and removes the oldest ones there. Of `info` the
  /// start and what is known in the end only are filled in. Where it fails, no folder stays.
  static FileResult<std::unique_ptr<Recorder>> begin(const Path& runs, RunInfo info,
                                                     std::chrono::sys_seconds start);

  /// The row reaches the file a fraction of a second later.
  void add(const Row& row);

  /// The run has ended; nothing after this is recorded.
  void end(std::string_view result, std::chrono::sys_seconds time);

  /// Where the record is.
  const Path& folder() const { return folder_; }
  /// Why it does not hold everything.
  std::optional<FileError> error() const;

 private:
  Recorder(std::shared_ptr<FileManager> files, Path folder, RunInfo info);

  FileResult<void> createFiles();
  void count(const Row& row) REQUIRES(mutex_);
  QJsonObject counts() const REQUIRES(mutex_);

  const std::shared_ptr<FileManager> files_;
  const Path folder_;
  mutable Mutex mutex_;
  RunInfo info_ GUARDED_BY(mutex_);
  /// Until the run's end: others see by it that the run goes on.
  std::unique_ptr<RowFile> rows_ GUARDED_BY(mutex_);
  std::map<std::string_view, Amount> counts_ GUARDED_BY(mutex_);  ///< by words that live for ever
  std::optional<FileError> error_ GUARDED_BY(mutex_);
};

}  // namespace kestrova::report
