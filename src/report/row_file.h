#pragma once

#include "platform/append_file.h"
#include "platform/mutex.h"
#include "report/row.h"

#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace kestrova::report {

/// A growing file of rows. They are collected and reach the file in large pieces, a fraction of a second
/// after they were added at the latest, written by a thread of its own: a disk that is busy with the run's
/// files holds up nobody who adds rows. Callable from any thread.
class RowFile {
 public:
  enum class Format { ndjson, csv };

  /// By the extension of the file's name: .ndjson or .csv; nothing for any other.
  static std::optional<Format> formatOf(const Path& file);

  /// Creates the file in an existing folder, readable by its user only. Fails with EEXIST when the name is
  /// taken.
  static FileResult<std::unique_ptr<RowFile>> create(const Path& file, Format format);
  /// Writes what is left.
  ~RowFile();
  RowFile(const RowFile&) = delete;
  RowFile& operator=(const RowFile&) = delete;

  /// After a failure nothing is added any more, so that the file stays readable to its last whole line.
  void add(const Row& row);

  /// Writes what has been added so far.
  void flush();

  /// Why rows could not be written.
  std::optional<FileError> error() const;

 private:
  RowFile(AppendFile file, Format format);
  void writeFromTimeToTime();
  void write() REQUIRES(mutex_);

  const Format format_;
  mutable Mutex mutex_;
  Condition changed_;
  AppendFile file_ GUARDED_BY(mutex_);
  std::string collected_ GUARDED_BY(mutex_);
  std::optional<FileError> error_ GUARDED_BY(mutex_);
  bool isEnding_ GUARDED_BY(mutex_) = false;
  std::thread writer_;
};

}  // namespace kestrova::report
