#pragma once

#include "execution/photo_preparation.h"
#include "execution/plan_list.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace kestrova {

/// What was made ahead of an operation's turn: a file that waits for its name.
struct PreparedFile {
  std::unique_ptr<StagedFile> copy = {};    ///< of an entry to copy
  std::optional<PreparedPhoto> photo = {};  ///< of an entry to rewrite; its file was staged without an error
  FileAttributes source = {};               ///< when it was read
  RewriteWishes wishes = {};                ///< by which the photo was rewritten
};

/// Prepares what the next operations of a run will need, on threads of its own, while the current one runs:
/// copies, and photos decoded, scaled and encoded. Nothing of it is visible outside the process except reads
/// and files without names, which disappear if nobody takes them.
///
/// Entries are begun in the plan's order. One that would need a decision (its source cannot be read or has
/// changed, the photo does not decode, there is no room) is left to its operation. So are files larger than
/// `largestFile`: a Stop would have to wait for them, and writing them takes longer than anything that could
/// be saved.
///
/// All methods may be called from any thread, but calls of `start`, `take`, `passOver` and `finish` must not
/// overlap.
class WorkAhead {
 public:
  static constexpr std::uint64_t largestFile = std::uint64_t{64} * 1024 * 1024;  ///< bytes

  struct Limits {
    std::size_t threads = 1;
    std::size_t photos = 1;   ///< decoded at the same time
    std::size_t files = 1;    ///< open and waiting for their turn
    std::uint64_t bytes = 0;  ///< in those files, and in memory while they are prepared
  };
  /// How to rewrite an entry's photo, as the user wants it at this moment.
  using WishesFor = std::function<RewriteWishes(const PlanEntry& entry)>;

  WorkAhead() = default;
  ~WorkAhead() { finish(); }
  WorkAhead(const WorkAhead&) = delete;
  WorkAhead& operator=(const WorkAhead&) = delete;

  /// Begins with the plan's first entry. The plan must not change until `finish`.
  void start(std::shared_ptr<const PlanList> plan, std::shared_ptr<FileManager> files, WishesFor wishes,
             Limits limits);

  /// Hands out what was prepared for an entry, waiting for it if it is under way. Nothing if the operation
  /// has to do it all: it was not prepared, or the source has changed since, or the user wants it otherwise.
  std::optional<PreparedFile> take(std::size_t index);
  /// Entries before this one are not needed, or read, any more.
  void passOver(std::size_t index);

  /// While paused, what is under way is completed and nothing else begun.
  void setPaused(bool paused);
  /// Begins nothing more, and gives up photos under way.
  void stop();
  /// Makes room: drops all that was prepared, for good. False if there was nothing.
  bool giveUp();
  /// Returns when the threads have ended, and nothing of what they prepared is left.
  void finish();

 private:
  /// For an entry that was begun.
  struct Slot {
    std::uint64_t bytes = 0;
    bool isReady = false;
    std::optional<PreparedFile> prepared = {};
  };

  void work() EXCLUDES(mutex_);
  std::optional<PlanEntry> waitForEntry() REQUIRES(mutex_);
  bool hasRoomFor(const PlanEntry& entry) const REQUIRES(mutex_);
  void store(std::size_t index, std::optional<PreparedFile> prepared) REQUIRES(mutex_);
  void dropBefore(std::size_t index) REQUIRES(mutex_);
  std::optional<PreparedFile> prepare(const PlanEntry& entry) EXCLUDES(mutex_);
  std::optional<PreparedFile> copyOf(const PlanEntry& entry);
  std::optional<PreparedFile> rewrittenPhotoOf(const PlanEntry& entry);
  bool isStillRight(const PlanEntry& entry, const PreparedFile& prepared) const;

  std::shared_ptr<const PlanList> plan_;
  std::shared_ptr<FileManager> files_;
  WishesFor wishes_;
  Limits limits_;
  std::vector<std::thread> threads_;
  std::atomic<bool> hasStopped_ = true;

  Mutex mutex_;
  Condition changed_;  ///< for the threads: there may be room, or it is over
  Condition ready_;    ///< for the operation: the first slot is ready
  std::deque<Slot> slots_ GUARDED_BY(mutex_);
  std::size_t first_ GUARDED_BY(mutex_) = 0;  ///< the entry of the first slot
  std::uint64_t bytes_ GUARDED_BY(mutex_) = 0;
  std::size_t underWay_ GUARDED_BY(mutex_) = 0;
  std::size_t photosUnderWay_ GUARDED_BY(mutex_) = 0;
  bool isPaused_ GUARDED_BY(mutex_) = false;
};

}  // namespace kestrova
