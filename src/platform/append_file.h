#pragma once

#include "platform/file_descriptor.h"
#include "platform/file_manager.h"

#include <string_view>

namespace kestrova {

/// A file that grows line by line. It is readable by its user only, and locked for as long as it is open, so
/// that others can tell whether its writer still lives. Calls must not overlap.
class AppendFile {
 public:
  /// Creates the file in an existing folder. Fails with EEXIST when the name is taken.
  static FileResult<AppendFile> create(const Path& path);

  /// Adds the bytes at the end. They survive a crash of the program, but not one of the machine. After an
  /// error some of them may have been written.
  FileResult<void> append(std::string_view bytes);

 private:
  explicit AppendFile(FileDescriptor file) : file_(std::move(file)) {}

  FileDescriptor file_;
};

/// Makes a finished file durable and lets it take the place of another one in its folder, in one step.
FileResult<void> replaceDurably(const Path& finished, const Path& replaced);

/// Whether the writer of such a file still has it open.
bool isBeingWritten(const Path& path);

}  // namespace kestrova
