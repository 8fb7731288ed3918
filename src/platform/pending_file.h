#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"
#include "platform/temporary_name.h"

#include <memory>
#include <string>

#include <sys/types.h>

namespace kestrova {

/// A file that is open for writing and gets its name at the end. Until then it has no name at all, if the
/// file system supports that, or a temporary one in the same folder.
class PendingFile final : public StagedFile {
 public:
  /// `mode` is subject to the umask.
  static FileResult<std::unique_ptr<PendingFile>> create(FileDescriptor folder, const std::string& name,
                                                         mode_t mode, Staging staging);
  ~PendingFile() override;

  int descriptor() const { return file_.get(); }
  FileResult<void> commit() override;
  FileResult<void> commitReplacing() override;
  FileResult<FileAttributes> attributes() const override;

 private:
  PendingFile(FileDescriptor folder, std::string name);
  FileResult<void> open(mode_t mode, Staging staging);
  FileResult<void> createNamed(mode_t mode);
  FileResult<void> giveTemporaryName();
  FileResult<void> takeName(const PutFile& put);

  FileDescriptor folder_;
  FileDescriptor file_;
  std::string finalName_;
  std::string temporaryName_;  ///< empty: no name yet, or the final one
};

}  // namespace kestrova
