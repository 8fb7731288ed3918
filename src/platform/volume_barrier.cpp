#include "platform/volume_barrier.h"

#include "platform/file_descriptor.h"
#include "platform/file_system.h"

namespace kestrova {

namespace {

/// What a slow disk takes to write as much.
std::chrono::milliseconds patienceFor(std::uint64_t bytes) {
  constexpr std::uint64_t slowDiskBytesPerMillisecond = 5'000;
  return std::chrono::seconds(2) + std::chrono::milliseconds(bytes / slowDiskBytesPerMillisecond);
}

}  // namespace

std::shared_ptr<VolumeBarrier> VolumeBarrier::of(int folder) {
  if (!host::volumeOf(folder).hasBarrier) return nullptr;
  auto opened = host::openFolder(folder);
  if (!opened) return nullptr;
  const auto volume = std::make_shared<FileDescriptor>(std::move(*opened));
  return std::make_shared<VolumeBarrier>(
      Calls{.makeVolumeDurable = [volume] { return host::makeVolumeDurable(volume->get()); },
            .makeDurable = host::makeDurable});
}

bool VolumeBarrier::isWorthIt() const {
  const MutexLock lock(mutex_);
  return isWorthIt_;
}

std::uint64_t VolumeBarrier::add(std::uint64_t bytes) {
  const MutexLock lock(mutex_);
  ++waiting_;
  newBytes_ += bytes;
  return ++last_;
}

void VolumeBarrier::remove() {
  const MutexLock lock(mutex_);
  --waiting_;
}

FileResult<void> VolumeBarrier::makeDurable(std::uint64_t number, int file) {
  const MutexLock oneAtATime(barrier_);
  bool isAlone = false;
  {
    const MutexLock lock(mutex_);
    --waiting_;
    if (number <= durable_) return {};
    isAlone = waiting_ == 0 || !isWorthIt_;
  }
  return isAlone ? calls_.makeDurable(file) : runBarrier(file);
}

FileResult<void> VolumeBarrier::runBarrier(int file) {
  std::uint64_t covered = 0;
  std::uint64_t bytes = 0;
  {
    const MutexLock lock(mutex_);
    covered = last_;
    bytes = std::exchange(newBytes_, 0);
  }
  const auto start = calls_.now();
  const auto done = calls_.makeVolumeDurable();
  const bool wasQuick = calls_.now() - start <= patienceFor(bytes);
  const MutexLock lock(mutex_);
  isWorthIt_ = done && wasQuick;
  if (done) durable_ = covered;
  return done ? FileResult<void>() : calls_.makeDurable(file);
}

}  // namespace kestrova
