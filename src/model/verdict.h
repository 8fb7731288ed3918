#pragma once

#include "model/naming_date.h"
#include "model/outcome.h"
#include "platform/file_manager.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrova {

/// What became of one source file, announced once, when it is known. Sizes in bytes.
struct Verdict {
  using Outcome = kestrova::Outcome;

  Outcome outcome = Outcome::copied;
  Path source;
  std::optional<Path> target = {};  ///< where there is one, also if it exists or its name is taken
  std::uint64_t sourceSize = 0;
  std::optional<std::uint64_t> targetSize = {};  ///< where a target was written
  std::optional<Date> sourceModified = {};
  std::optional<Date> targetModified = {};  ///< where a target was written
  std::optional<NamingDate> date = {};      ///< absent if the file was set aside before it was named
  std::optional<Path> original =
      {};                         ///< the source kept instead of this one: it has the same content or name
  std::string error = {};         ///< the system's words, or why a photo was not rewritten; UTF-8
  int errorCode = 0;              ///< the system's number of the error; 0 if it has none
  std::int64_t pagesLeftOut = 0;  ///< of a TIFF that was rewritten
  std::string sourceSha256 = {};  ///< of the bytes that were read, for a rewritten photo: 64 hex digits
  std::string targetSha256 = {};  ///< of the bytes that were written, for a rewritten photo
  std::vector<Path> createdFolders = {};  ///< for this file, below the target folder, the outermost first
  /// The counters that it raises, if these are not its outcome's own: a file that cannot be read may count as
  /// a duplicate.
  std::optional<Outcome> countedAs = {};

  /// A file that could not be read counts as what it seemed to be, but its content is unknown.
  void becomeUnreadable(std::string why) {
    countedAs = counted();
    outcome = Outcome::unreadable;
    error = std::move(why);
    original.reset();
  }

  Outcome counted() const { return countedAs.value_or(outcome); }
};

/// Called on the worker that reached the verdict; must return quickly and must not throw.
using VerdictListener = std::function<void(const Verdict&)>;

}  // namespace kestrova
