#pragma once

#include "platform/file_manager.h"
#include "platform/mutex.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace kestrova {

/// Makes the files of one volume durable in groups, as databases commit: a single call covers all files that
/// were complete before it began, so the slower the disk, the larger the group. Callable from any thread.
///
/// A file whose barrier fails is synchronised by itself, which tells whether it was this one that failed. The
/// same happens if a file is alone, and to all files from the moment on when a barrier takes so long that
/// other programs must be writing to the volume. docs/durability.md has the argument.
class VolumeBarrier {
 public:
  /// For the volume of a folder, given as an open place; null if the volume has no barrier to rely on, or the
  /// folder may not be read.
  static std::shared_ptr<VolumeBarrier> of(int folder);

  /// What the system does for it.
  struct Calls {
    std::function<FileResult<void>()> makeVolumeDurable;
    std::function<FileResult<void>(int file)> makeDurable;
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
  };
  explicit VolumeBarrier(Calls calls) : calls_(std::move(calls)) {}

  /// Whether files should wait for a barrier at all.
  bool isWorthIt() const;

  /// A file of this size has been written completely. Returns its number, for one of the following calls.
  std::uint64_t add(std::uint64_t bytes);
  /// Returns once the file is on the medium: see host::makeDurable.
  FileResult<void> makeDurable(std::uint64_t number, int file);
  /// Nobody needs the file any more.
  void remove();

 private:
  FileResult<void> runBarrier(int file);

  const Calls calls_;
  Mutex barrier_;  ///< held while one runs
  mutable Mutex mutex_;
  std::uint64_t last_ GUARDED_BY(mutex_) = 0;      ///< the number of the last file
  std::uint64_t durable_ GUARDED_BY(mutex_) = 0;   ///< all files up to this number are on the medium
  std::size_t waiting_ GUARDED_BY(mutex_) = 0;     ///< files that were neither made durable nor removed
  std::uint64_t newBytes_ GUARDED_BY(mutex_) = 0;  ///< of files since the last barrier began
  bool isWorthIt_ GUARDED_BY(mutex_) = true;
};

}  // namespace kestrova
