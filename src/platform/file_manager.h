#pragma once

#include "platform/bytes.h"
#include "platform/date.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tl/expected.hpp>

namespace kestrova {

using Path = std::filesystem::path;

/// What went wrong with a file.
struct FileError {
  enum class Kind {
    alreadyExists,
    noSpace,     ///< the volume, or the user's quota, is full
    notFound,    ///< the file, or a folder above it
    unreadable,  ///< while copying: the source failed
    other,
  };

  int code = 0;         ///< the system's own error number (errno)
  std::string message;  ///< the system's description, in UTF-8
  Kind kind = kindOf(code);

  static Kind kindOf(int code);
};

template <typename Value>
using FileResult = tl::expected<Value, FileError>;

/// Identifies a file by its volume and its number there, not by its names.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  bool operator==(const FileIdentity&) const = default;
};

struct FileAttributes {
  std::uint64_t size = 0;  ///< bytes
  Date modified;
  Date statusChanged = {};  ///< when its bytes or anything else last changed; programs cannot set it
  FileIdentity identity = {};
  bool isDirectory = false;
  bool isRegularFile = false;
  bool operator==(const FileAttributes&) const = default;
};

/// What is known of a file that was opened. Each may fail by itself.
struct FileStart {
  FileResult<FileAttributes> attributes;
  FileResult<Bytes> bytes;
};

class Folder;

/// What to do with a symbolic link at the end of a path.
enum class FinalLink { followed, refused };

/// When a file is staged.
enum class StagingTime {
  inTurn,  ///< it gets its name next
  ahead,   ///< others get theirs before
};

/// A complete file that has no name yet. It disappears if it is destroyed before it got one.
class StagedFile {
 public:
  virtual ~StagedFile() = default;
  StagedFile() = default;
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  /// Returns once the file is on the medium and then has its final name, in the folder it was staged for.
  /// Fails with `alreadyExists` when the name is taken.
  virtual FileResult<void> commit() = 0;
  /// The same, but atomically replaces a file of that name.
  virtual FileResult<void> commitReplacing() = 0;

  /// Of the file as it is now; a name changes none of them.
  virtual FileResult<FileAttributes> attributes() const = 0;
};

/// The target folder of a run. While it is held, everything read or written below its path goes to this same
/// folder, even if the path leads elsewhere by then, and never through a symbolic link that was swapped in:
/// such a link is an error (ELOOP) of the file.
class HeldTarget {
 public:
  virtual ~HeldTarget() = default;
  HeldTarget() = default;
  HeldTarget(const HeldTarget&) = delete;
  HeldTarget& operator=(const HeldTarget&) = delete;

  /// Until this call, a link to a folder on the way to an item is the user's own: it is followed, and must
  /// lead to the same folder for the whole run. Call it when the run is planned.
  virtual void followNoNewLinks() = 0;

  /// Returns once every name that was given below the target since it is held is safe on the medium: those of
  /// files and folders, and that of the target folder itself. All are tried; the error is the first one.
  virtual FileResult<void> makeNamesDurable() = 0;
};

/// Receives the attributes of a source as soon as it is open. The call that opened it returns its error.
using SourceCheck = std::function<FileResult<void>(const FileAttributes& source)>;

/// The program's access to the host's file system. Paths are bytes and never pass through a text codec; they
/// may be longer than the system's own limit for one call. Nothing here blocks on a FIFO or a device, follows
/// a symbolic link to write, or changes a source file. Callable from any thread; calls on one StagedFile must
/// not overlap.
class FileManager {
 public:
  virtual ~FileManager() = default;

  /// The attributes of the item at the path; symbolic links are followed.
  virtual FileResult<FileAttributes> attributesOfItem(const Path& path) const = 0;

  /// Opens a folder for reading.
  virtual FileResult<std::unique_ptr<Folder>> openFolder(const Path& path, FinalLink finalLink) const = 0;

  /// At most the first `count` bytes of a regular file.
  virtual FileResult<Bytes> readPrefix(const Path& path, std::size_t count) const = 0;

  /// A file's attributes, and at most its first `count` bytes if it is a regular file. The file is opened
  /// once.
  virtual FileStart readStart(const Path& path, std::size_t count) const {
    return {attributesOfItem(path), readPrefix(path, count)};
  }

  /// A regular file's whole contents. The check may be absent.
  virtual FileResult<Bytes> readFile(const Path& path, const SourceCheck& check) const = 0;
  FileResult<Bytes> readFile(const Path& path) const { return readFile(path, nullptr); }

  /// Whether files can be created in the folder or, if it does not exist, whether it can be created. The
  /// error says why not. Changes nothing.
  virtual FileResult<void> checkTarget(const Path& folder) const = 0;

  /// Holds a run's target folder for as long as the result lives, one at a time: see HeldTarget. The folder
  /// need not exist yet.
  virtual std::shared_ptr<HeldTarget> holdTarget(const Path& folder) = 0;

  /// Creates the folder and all missing folders above it; it is not an error if it exists.
  virtual FileResult<void> createDirectory(const Path& folder) = 0;

  /// Copies a regular file's data, permissions, modification time and extended attributes. If the source
  /// cannot be read, the error is `unreadable`. The check may be absent.
  ///
  /// A file can be staged ahead of its turn where it gets its name below the held target. Its folder may
  /// still be missing then; it is needed when the file gets its name. Many files staged ahead become durable
  /// together, when the first of them needs to be. Fails for any reason that would need a decision.
  /// Whether the source was changed while it was copied must be checked before the file gets its name.
  virtual FileResult<std::unique_ptr<StagedFile>> stageCopy(const Path& from, const Path& to,
                                                            const SourceCheck& check, StagingTime time) = 0;
  FileResult<std::unique_ptr<StagedFile>> stageCopy(const Path& from, const Path& to,
                                                    const SourceCheck& check) {
    return stageCopy(from, to, check, StagingTime::inTurn);
  }

  /// Writes bytes, with the permissions of a new file.
  virtual FileResult<std::unique_ptr<StagedFile>> stageData(ByteView data, const Path& to,
                                                            StagingTime time) = 0;
  FileResult<std::unique_ptr<StagedFile>> stageData(ByteView data, const Path& to) {
    return stageData(data, to, StagingTime::inTurn);
  }

  /// Whether a path leads to an item; symbolic links are followed. Fails if that cannot be determined: what
  /// cannot be looked up is not absent.
  virtual FileResult<bool> fileExists(const Path& path) const;
  bool isDirectory(const Path& path) const;

  /// A whole copy under the name `to`, or none; an existing item there is left alone (`alreadyExists`).
  FileResult<void> copyItem(const Path& from, const Path& to);
  /// The bytes under the name `to`, or no file; an existing item there is left alone (`alreadyExists`).
  FileResult<void> writeData(ByteView data, const Path& to);
  /// The bytes under the name `to`; an existing file there is replaced atomically.
  FileResult<void> writeDataReplacing(ByteView data, const Path& to);
};

/// Where a staged file waits for its name.
enum class Staging {
  unseen,              ///< invisible, if the file system supports files without a name; else the other way
  underTemporaryName,  ///< hidden in its target's folder; if a killed run leaves it there, a later run
                       ///< removes it
};

/// How files wait for their names in a folder, which is given as an open place.
using StagingChoice = std::function<Staging(int folder)>;

/// Unseen, unless the folder's volume may lose files that were made durable before they had a name.
Staging stagingFor(int folder);

/// The host's own file system.
std::shared_ptr<FileManager> systemFileManager(StagingChoice staging = stagingFor);
std::shared_ptr<FileManager> systemFileManager(Staging staging);

}  // namespace kestrova
