#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"

#include <climits>

namespace kestrova {

/// A path in the form that system calls take: an open folder and the rest of the path from there. The rest
/// always fits into one call, however long the path is. Borrows the path's bytes, which must outlive it.
class PathAddress {
 public:
  static FileResult<PathAddress> of(const std::string& path);

  int folder() const { return folder_ ? folder_.get() : currentFolder; }
  const char* rest() const { return rest_; }

 private:
  static const int currentFolder;

  explicit PathAddress(const char* path) : rest_(path) {}
  FileResult<void> enterFirstFolders();

  FileDescriptor folder_;
  const char* rest_;
};

/// Opens a folder to start paths from; needs no permission to read it. Symbolic links on the way are
/// followed.
FileResult<FileDescriptor> openPlace(int folder, const char* path, FinalLink finalLink);
/// The same for a path of any length; a link at its end is followed.
FileResult<FileDescriptor> openPlace(const Path& path);

}  // namespace kestrova
