#include "execution/work_ahead.h"

#include "execution/source_check.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace kestrova {

namespace {

/// What decoding and scaling takes, as a multiple of the photo's size.
constexpr std::uint64_t decodedSize = 16;

bool isPhoto(const PlanEntry& entry) { return entry.handler == PlanEntry::Handler::resize; }

std::uint64_t bytesFor(const PlanEntry& entry) {
  return entry.planned.size * (isPhoto(entry) ? decodedSize : 1);
}

/// Other entries need a decision in their turn. A copy whose name is taken is not made at all.
bool canBePrepared(const PlanEntry& entry) {
  return entry.to && entry.planned.size <= WorkAhead::largestFile &&
         (isPhoto(entry) || !entry.planned.isNameTaken);
}

/// The plan's check, which also remembers what the source is like.
SourceCheck checkAndNote(const PlanEntry& entry, FileAttributes& noted) {
  return [&entry, &noted](const FileAttributes& source) -> FileResult<void> {
    noted = source;
    const auto check = checkAgainst(entry.planned);
    return check ? check(source) : FileResult<void>();
  };
}

}  // namespace

void WorkAhead::start(std::shared_ptr<const PlanList> plan, std::shared_ptr<FileManager> files,
                      WishesFor wishes, Limits limits) {
  finish();
  plan_ = std::move(plan);
  files_ = std::move(files);
  wishes_ = std::move(wishes);
  limits_ = limits;
  hasStopped_ = false;
  {
    const MutexLock lock(mutex_);
    first_ = 0;
    isPaused_ = false;
  }
  for (std::size_t i = 0; i < limits_.threads; ++i) threads_.emplace_back([this] { work(); });
}

void WorkAhead::finish() {
  stop();
  for (auto& thread : threads_) thread.join();
  threads_.clear();
  const MutexLock lock(mutex_);
  dropBefore(first_ + slots_.size());
}

void WorkAhead::stop() {
  const MutexLock lock(mutex_);
  hasStopped_ = true;
  changed_.notifyAll();
}

void WorkAhead::setPaused(bool paused) {
  const MutexLock lock(mutex_);
  isPaused_ = paused;
  changed_.notifyAll();
}

bool WorkAhead::giveUp() {
  stop();
  const MutexLock lock(mutex_);
  while (underWay_ > 0) ready_.wait(mutex_);
  const bool hadAny = !slots_.empty();
  dropBefore(first_ + slots_.size());
  return hadAny;
}

void WorkAhead::passOver(std::size_t index) {
  const MutexLock lock(mutex_);
  dropBefore(index);
}

std::optional<PreparedFile> WorkAhead::take(std::size_t index) {
  std::optional<PreparedFile> prepared;
  {
    const MutexLock lock(mutex_);
    dropBefore(index);
    if (first_ > index) return std::nullopt;  // asked for before
    while (!slots_.empty() && !slots_.front().isReady) ready_.wait(mutex_);
    if (!slots_.empty()) prepared = std::move(slots_.front().prepared);
    dropBefore(index + 1);
  }
  if (prepared && !isStillRight(plan_->entry(index), *prepared)) prepared.reset();
  return prepared;
}

// Threads that wait for room are woken when there is some to spare, not for each entry.
void WorkAhead::dropBefore(std::size_t index) {
  for (; first_ < index && !slots_.empty(); ++first_) {
    bytes_ -= slots_.front().bytes;
    slots_.pop_front();
  }
  first_ = std::max(first_, index);
  if (slots_.size() <= limits_.files / 4 * 3 && bytes_ <= limits_.bytes / 4 * 3) changed_.notifyAll();
}

void WorkAhead::work() {
  MutexLock lock(mutex_);
  while (const auto entry = waitForEntry()) {
    const std::size_t index = first_ + slots_.size();
    slots_.push_back({.bytes = bytesFor(*entry)});
    bytes_ += bytesFor(*entry);
    ++underWay_;
    if (isPhoto(*entry)) ++photosUnderWay_;
    lock.unlock();
    auto prepared = prepare(*entry);
    lock.lock();
    if (isPhoto(*entry)) --photosUnderWay_;
    --underWay_;
    store(index, std::move(prepared));
  }
}

/// The next entry; nothing at the end.
std::optional<PlanEntry> WorkAhead::waitForEntry() {
  while (!hasStopped_ && first_ + slots_.size() < plan_->size()) {
    auto entry = plan_->entry(first_ + slots_.size());
    if (!isPaused_ && hasRoomFor(entry)) return entry;
    changed_.wait(mutex_);
  }
  return std::nullopt;
}

bool WorkAhead::hasRoomFor(const PlanEntry& entry) const {
  if (isPhoto(entry) && photosUnderWay_ >= limits_.photos) return false;
  return slots_.empty() || (slots_.size() < limits_.files && bytes_ + bytesFor(entry) <= limits_.bytes);
}

void WorkAhead::store(std::size_t index, std::optional<PreparedFile> prepared) {
  if (index >= first_) {
    Slot& slot = slots_[index - first_];
    slot.isReady = true;
    slot.prepared = std::move(prepared);
  }
  if (index <= first_ || hasStopped_) ready_.notifyAll();
  if (photosUnderWay_ + 1 == limits_.photos) changed_.notifyAll();
}

std::optional<PreparedFile> WorkAhead::prepare(const PlanEntry& entry) try {
  if (!canBePrepared(entry)) return std::nullopt;
  return isPhoto(entry) ? rewrittenPhotoOf(entry) : copyOf(entry);
} catch (const std::exception&) {
  return std::nullopt;
}

std::optional<PreparedFile> WorkAhead::copyOf(const PlanEntry& entry) {
  PreparedFile prepared;
  const auto check = checkAndNote(entry, prepared.source);
  auto copy = files_->stageCopy(entry.from, *entry.to, check, StagingTime::ahead);
  if (!copy) return std::nullopt;
  prepared.copy = std::move(*copy);
  return prepared;
}

std::optional<PreparedFile> WorkAhead::rewrittenPhotoOf(const PlanEntry& entry) {
  PreparedFile prepared{.wishes = wishes_(entry)};
  auto photo = preparePhoto(*files_, {.from = entry.from,
                                      .to = *entry.to,
                                      .size = entry.planned.size,
                                      .wishes = prepared.wishes,
                                      .check = checkAndNote(entry, prepared.source),
                                      .stopped = [this] { return hasStopped_.load(); },
                                      .time = StagingTime::ahead});
  if (!photo || !photo->file) return std::nullopt;
  prepared.photo = std::move(*photo);
  return prepared;
}

bool WorkAhead::isStillRight(const PlanEntry& entry, const PreparedFile& prepared) const {
  if (isPhoto(entry) && wishes_(entry) != prepared.wishes) return false;
  const auto now = files_->attributesOfItem(entry.from);
  return now && *now == prepared.source;
}

}  // namespace kestrova
