#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"
#include "platform/temporary_name.h"
#include "platform/volume_barrier.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

namespace kestrova {

/// A file that is open for writing and gets its name at the end. Until then it has no name at all, if the
/// file system supports that, or a temporary one in the folder where it waits.
class PendingFile final : public StagedFile {
 public:
  /// Where a file waits for its name.
  struct Place {
    std::shared_ptr<const FileDescriptor> folder;
    Staging staging = Staging::unseen;
    int temporaryNumber = 0;  ///< where to begin to look for a temporary name
    /// Opens the folder that is to hold the file, which is on the same volume; absent if it waits there.
    std::function<FileResult<FileDescriptor>()> enterFinalFolder = {};
    std::shared_ptr<VolumeBarrier> barrier = {};  ///< of the volume, if files there wait for one
  };

  /// `mode` is subject to the umask.
  static FileResult<std::unique_ptr<PendingFile>> create(Place place, std::string name, mode_t mode);
  ~PendingFile() override;

  int descriptor() const { return file_.get(); }
  /// All has been written. A file that is ahead of its turn begins its way to the disk.
  FileResult<void> complete(std::uint64_t bytes, StagingTime time);

  FileResult<void> commit() override;
  FileResult<void> commitReplacing() override;
  FileResult<FileAttributes> attributes() const override;

 private:
  PendingFile(Place place, std::string name) : place_(std::move(place)), finalName_(std::move(name)) {}
  FileResult<void> open(mode_t mode);
  FileResult<void> createNamed(mode_t mode);
  FileResult<void> giveTemporaryName();
  FileResult<void> takeName(const PutFile& put);
  FileResult<void> makeDurable();
  FileResult<void> enterFinalFolder();
  int folder() const { return place_.folder->get(); }
  int finalFolder() const { return finalFolder_ ? finalFolder_.get() : folder(); }

  Place place_;
  FileDescriptor file_;
  FileDescriptor finalFolder_;  ///< if the file has a temporary name elsewhere
  std::string finalName_;
  std::string temporaryName_;                   ///< where it waits; empty: no name yet, or the final one
  std::optional<std::uint64_t> barrierNumber_;  ///< if it waits for the barrier
  bool isDurable_ = false;
};

}  // namespace kestrova
