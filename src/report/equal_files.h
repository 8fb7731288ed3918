#pragma once

#include "report/content.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrova::report {

/// Files of one size, to be compared with each other.
struct EqualSizedFiles {
  std::uint64_t size = 0;  ///< bytes; a file whose size has changed equals none
  std::vector<Path> wanted;
  std::vector<Path> candidates;
};

/// What was found for one of the wanted files.
struct EqualFile {
  std::optional<std::size_t> candidate;  ///< the first of those that hold the same bytes
  std::optional<FileError> error;        ///< why the wanted file itself cannot be read
};

/// Finds for each wanted file a candidate with exactly the same bytes that is another file: another name of
/// the same file is not a copy of it. The files are read side by side, each byte at most once, and each only
/// as long as another may still be equal to it. Memory and the number of open files are bounded. One answer
/// for each wanted file, in their order; ECANCELED when `stopped` ended the work. Callable from any thread.
FileResult<std::vector<EqualFile>> findEqualFiles(const EqualSizedFiles& files,
                                                  ReadFrom from = ReadFrom::cache,
                                                  const Stopped& stopped = {});

}  // namespace kestrova::report
