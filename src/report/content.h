#pragma once

#include "platform/file_reader.h"
#include "platform/sha256.h"
#include "report/stopped.h"

#include <string>

/// The exact contents of files. Callable from any thread; only a few buffers are kept in memory. What
/// `stopped` ends fails with ECANCELED.
namespace kestrova::report {

using kestrova::sha256Of;

/// The same of a regular file.
FileResult<std::string> sha256Of(const Path& path, ReadFrom from = ReadFrom::cache,
                                 const Stopped& stopped = {});

/// Why two files could not be compared, and which of them it was.
struct ComparisonError {
  bool isFirst = false;
  FileError error;
};

/// Whether two regular files hold the same bytes. Files of different sizes are not read.
tl::expected<bool, ComparisonError> haveSameContent(const Path& first, const Path& second,
                                                    ReadFrom from = ReadFrom::cache,
                                                    const Stopped& stopped = {});

/// What a comparison came to.
struct ComparisonResult {
  bool isSameContent = false;
  bool isSameFile = false;  ///< two names of one file
  std::string sha256 = {};  ///< of the content, where it is the same
};

/// Compares two regular files and sums what they have in common, with one reading of each. `from` is where
/// the second one's bytes come from.
tl::expected<ComparisonResult, ComparisonError> compareAndSum(const Path& first, const Path& second,
                                                              ReadFrom from = ReadFrom::cache,
                                                              const Stopped& stopped = {});

/// Whether both paths lead to the same file; false if either cannot be opened.
bool areSameFile(const Path& first, const Path& second);

}  // namespace kestrova::report
