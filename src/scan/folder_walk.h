#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace kestrova {

struct WalkedFile {
  Path path;               ///< the root as given, with the names below it
  std::uint64_t size = 0;  ///< bytes, just before the visit; 0 where the attributes cannot be read
  std::optional<FileError> error = {};  ///< why they cannot be read
  bool isLink = false;                  ///< a symbolic link to a file
};

struct FolderWalk {
  /// Says by its name (bytes, without folder) whether a file is wanted. Other files cost neither memory nor a
  /// system call, unless `leaves` listens.
  std::function<bool(std::string_view name)> wants;
  /// Asked before every entry, folders and unwanted files included, is looked at, and again before each file
  /// is told of and each folder entered; false ends the walk at once.
  std::function<bool()> keepsGoing;
  /// Told of every wanted file.
  std::function<void(const WalkedFile&)> visits;
  /// Told of every file that is not wanted, where its name stands in the order.
  std::function<void(const WalkedFile&)> leaves = {};
  /// Told of every folder that could not be read, or not to its end, and of every link of which nobody knows
  /// what it leads to. What vanished during the walk is none of these.
  std::function<void(const Path& path, const FileError& error)> cannotRead = {};
};

/// Walks the whole tree below `root`, the entries of each folder in byte order of their names, hidden ones
/// included, a subfolder's contents where its name stands. Symbolic links to folders are not entered, except
/// `root` itself; one to a regular file is taken as the file that it leads to. FIFOs, sockets, devices and
/// dangling links are passed over in silence. A folder's names are read first; a file's attributes are asked
/// for when its turn comes, so that a large folder is told of from its first file on. There is no limit on
/// depth or on the length of a path, and at most two folders are open at a time. Returns false when
/// `keepsGoing` ended the walk.
bool walkFolder(const FileManager& files, const Path& root, const FolderWalk& walk);

}  // namespace kestrova
