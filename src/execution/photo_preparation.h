#pragma once

#include "execution/photo_rewriting.h"
#include "platform/file_manager.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kestrova {

/// A photo to rewrite.
struct PhotoTask {
  const Path& from;
  const Path& to;
  std::uint64_t size = 0;  ///< bytes, as planned
  RewriteWishes wishes;
  SourceCheck check = {};         ///< may be absent
  imaging::Stopped stopped = {};  ///< interrupts the rewriting
  StagingTime time = StagingTime::inTurn;
};

/// A photo that was rewritten.
struct PreparedPhoto {
  Rewriting rewriting;  ///< without the new photo's bytes
  std::string sourceSha256 = {};
  std::string targetSha256 = {};
  /// The new photo, or why it could not be written. Null if the photo is left out.
  FileResult<std::unique_ptr<StagedFile>> file = nullptr;
};

/// A rewritten photo, and what became of its file.
struct WrittenPhoto {
  PreparedPhoto photo;
  FileResult<FileAttributes> file;  ///< its attributes; of no meaning if the photo is left out
};

using PhotoResult = tl::expected<WrittenPhoto, imaging::RewriteError>;

/// Reads, rewrites and stages a photo. An error if it cannot be read or decoded,
/// and if it is interrupted. Callable from any thread.
tl::expected<PreparedPhoto, imaging::RewriteError> preparePhoto(FileManager& files, const PhotoTask& task);

/// Gives the new photo its name, in place of an existing file.
WrittenPhoto nameReplacing(PreparedPhoto photo);

}  // namespace kestrova
