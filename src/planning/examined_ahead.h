#pragma once

#include "planning/plan_file.h"
#include "platform/ahead.h"
#include "scan/duplicate_index.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace kestrova {

/// Examines the files of a list in their order, on several threads ahead of their turn. The result is that of
/// examining each file when its turn comes, except that a file may be examined a little earlier.
class ExaminedAhead {
 public:
  /// With no threads, a file is examined when its turn comes. The list must not change.
  ExaminedAhead(const FileList& fileList, const FileManager& files, std::size_t threads)
      : fileList_(fileList), files_(files), threads_(threads), groups_(threads) {}

  /// The next file of the list; there must be one. The options may be others than before: what was examined
  /// ahead with those is examined again.
  ExaminedFile next(const ReadingOptions& options);

 private:
  using Group = std::vector<ExaminedFile>;

  void askForMore(const ReadingOptions& options);

  const FileList& fileList_;
  const FileManager& files_;
  const std::size_t threads_;
  std::size_t next_ = 0;   ///< index of the next file
  std::size_t asked_ = 0;  ///< before this one, all files have been asked for
  std::deque<ExaminedFile> examined_;
  Ahead<Group> groups_;
};

}  // namespace kestrova
