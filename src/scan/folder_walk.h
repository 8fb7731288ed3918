#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace kestrova {

struct WalkedFile {
  Path path;                            ///< the root as given, with the names below it
  std::uint64_t size = 0;               ///< bytes, just before the visit; 0 if the attributes cannot be read
  std::optional<FileError> error = {};  ///< why they cannot be read
  bool isLink = false;                  ///< a symbolic link to a file
};

struct FolderWalk {
  /// Decides by its name (bytes, without folder) whether a file is wanted. Other files cost no memory and no
  /// system call, unless `leaves` is set.
  std::function<bool(std::string_view name)> wants;
  /// Called before every entry, including folders and unwanted files, and again before each file is reported
  /// and each folder is entered; false ends the walk at once.
  std::function<bool()> keepsGoing;
  /// Called for every wanted file.
  std::function<void(const WalkedFile&)> visits;
  /// Called for every file that is not wanted, in the order of names.
  std::function<void(const WalkedFile&)> leaves = {};
  /// Called for every folder that could not be read completely, and for every link whose target cannot be
  /// determined. Entries that disappear during the walk are not reported.
  std::function<void(const Path& path, const FileError& error)> cannotRead = {};
};

/// Walks the whole tree below `root`, the entries of each folder in byte order of their names, including
/// hidden ones; a subfolder's contents come where its name is in the order. Symbolic links to folders are not
/// entered, except `root` itself; one to a regular file counts as the file that it leads to. FIFOs, sockets,
/// devices and dangling links are skipped silently. A folder's names are read first; a file's attributes are
/// read when its turn comes, so that files of a large folder are reported from the start. There is no limit
/// on depth or on the length of a path, and at most two folders are open at a time. Returns false when
/// `keepsGoing` ended the walk.
bool walkFolder(const FileManager& files, const Path& root, const FolderWalk& walk);

}  // namespace kestrova
