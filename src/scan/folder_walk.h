#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace kestrova {

struct WalkedFile {
  Path path;               ///< the root as given, with the names below it
  std::uint64_t size = 0;  ///< bytes, when its folder was read; 0 where the attributes cannot be read
};

struct FolderWalk {
  /// Says by its name (bytes, without folder) whether a file is wanted. Only wanted files cost memory or a
  /// system call.
  std::function<bool(std::string_view name)> wants;
  /// Asked before every entry, folders and unwanted files included, is looked at, and again before each file
  /// is told of and each folder entered; false ends the walk at once.
  std::function<bool()> keepsGoing;
  /// Told of every wanted file.
  std::function<void(const WalkedFile&)> visits;
};

/// Walks the whole tree below `root`, the entries of each folder in byte order of their names, hidden ones
/// included, a subfolder's contents where its name stands. Symbolic links to folders are not entered, but for
/// `root` itself; one to a regular file is taken as the file that it leads to. FIFOs, sockets, devices,
/// dangling links, what cannot be read and what vanishes meanwhile are passed over in silence. There is no
/// limit on depth or on the length of a path, and at most two files are open at a time. Returns false when
/// `keepsGoing` ended the walk.
bool walkFolder(const Path& root, const FolderWalk& walk);

}  // namespace kestrova
