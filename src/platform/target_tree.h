#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"
#include "platform/mutex.h"
#include "platform/volume_barrier.h"

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace kestrova {

/// A run's target folder and the folders below it. The folder itself is opened once: later writes go to this
/// same folder, even if its path leads elsewhere by then. Folders below it are entered from there, and a
/// symbolic link on the way is followed only if it was found before `followNoNewLinks`, and only to the
/// folder that it led to then. Callable from any thread.
class TargetTree final : public HeldTarget {
 public:
  explicit TargetTree(const Path& root);

  /// Whether the path is that of the target folder or of something below it. Paths with ".." are not.
  bool holds(const Path& folder) const { return namesBelow(folder).has_value(); }

  /// Opens a folder of the tree to start paths from.
  FileResult<FileDescriptor> enter(const Path& folder) { return walk(folder, IfMissing::fail); }
  /// The same, but first creates what is missing, including the target folder.
  FileResult<FileDescriptor> create(const Path& folder) { return walk(folder, IfMissing::create); }
  /// Opens the innermost folder that exists of the target folder and those on the way to this one, if it is
  /// on the target's volume and no symbolic link is on the way. What is created there has the same group,
  /// access rules and quota as if it were created in the folder itself.
  FileResult<std::shared_ptr<const FileDescriptor>> enterNearest(const Path& folder);

  /// Of the target's volume; null if files must not wait for one, or the target folder is missing.
  std::shared_ptr<VolumeBarrier> barrier();
  /// Counts the files that wait ahead of their turn, from 0 on.
  int nextTemporaryNumber() { return temporaryNumber_++; }
  /// How files wait on the target's volume, by that choice; asked once.
  Staging staging(const StagingChoice& choice);

  void followNoNewLinks() override;

  /// A name is about to be given in the folder, which this holds.
  void noteNewName(const Path& folder);
  FileResult<void> makeNamesDurable() override;
  /// Those that wait for that.
  std::set<Path> foldersWithNewNames();

 private:
  enum class IfMissing { fail, create };

  /// Identifies a folder by anything but its names.
  struct Identity {
    dev_t volume = 0;
    ino_t number = 0;
    bool operator==(const Identity&) const = default;
  };

  struct Step {
    int parent = -1;
    std::string name;
    std::string path;  ///< from the target folder
  };

  void noteMissing(Path folder);
  static FileResult<Identity> identityOf(int folder);
  std::optional<std::string_view> namesBelow(const Path& folder) const;
  FileResult<FileDescriptor> walk(const Path& folder, IfMissing ifMissing);
  FileResult<int> openRoot(IfMissing ifMissing);
  FileResult<FileDescriptor> reopenRoot(IfMissing ifMissing);
  FileResult<FileDescriptor> walkByNames(int root, std::string_view names, IfMissing ifMissing);
  FileResult<FileDescriptor> enterNext(const Step& step, IfMissing ifMissing);
  FileResult<FileDescriptor> followLink(const Step& step);

  const Path root_;
  std::atomic<int> temporaryNumber_ = 0;
  Mutex mutex_;
  FileDescriptor opened_ GUARDED_BY(mutex_);  ///< the target folder, once there is one
  std::shared_ptr<VolumeBarrier> barrier_ GUARDED_BY(mutex_);
  std::optional<Staging> staging_ GUARDED_BY(mutex_);
  std::string nearestTo_ GUARDED_BY(mutex_);  ///< the last folder that was entered as the nearest to itself
  std::shared_ptr<const FileDescriptor> nearest_ GUARDED_BY(mutex_);
  std::map<std::string, Identity> links_ GUARDED_BY(mutex_);  ///< by their paths from the target folder
  bool followsNewLinks_ GUARDED_BY(mutex_) = true;
  std::set<Path> newNames_ GUARDED_BY(mutex_);
};

}  // namespace kestrova
