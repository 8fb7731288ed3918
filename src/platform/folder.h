#pragma once

#include "platform/file_manager.h"

#include <functional>
#include <memory>

namespace kestrova {

/// What an entry of a folder is; a link is not followed to find out.
enum class EntryKind { folder, file, link, other };

/// A folder that is open for reading. Names are bytes without a slash. Calls on one folder must not overlap.
class Folder {
 public:
  using TakeEntry = std::function<bool(const char* name, EntryKind kind)>;

  virtual ~Folder() = default;

  /// Passes every entry except "." and ".." to `take`, in the file system's own order, until it returns
  /// false. After an error some entries may be missing. Call it once.
  virtual FileResult<void> list(const TakeEntry& take) = 0;

  /// The attributes of what an entry leads to; symbolic links are followed.
  virtual FileResult<FileAttributes> attributesOf(const char* name) const = 0;

  /// Opens a folder in this one; a symbolic link is an error.
  virtual FileResult<std::unique_ptr<Folder>> openFolder(const char* name) const = 0;
};

/// The host's folder at a path of any length. `finalLink` says what happens to a symbolic link at the path's
/// end.
FileResult<std::unique_ptr<Folder>> openSystemFolder(const Path& path, FinalLink finalLink);

}  // namespace kestrova
