#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kestrova {

/// What became of one source file, announced once, when it is known.
struct Verdict {
  enum class Outcome {
    copied,
    resized,      ///< written anew, smaller
    rewritten,    ///< written anew at its own size
    duplicate,    ///< of `original`
    sameContent,  ///< equal to a later file of its size, `original`: passed over
    small,        ///< left out by a filter
    exists,       ///< the target was there
    failed,       ///< see `error`
  };
  Outcome outcome = Outcome::copied;
  Path source;
  std::optional<Path> target = {};
  std::uint64_t sourceSize = 0;                  ///< bytes
  std::optional<std::uint64_t> targetSize = {};  ///< bytes, where a target was written
  std::optional<Path> original = {};
  std::string error = {};  ///< the system's words, in UTF-8
};

/// Called on the worker that came to the verdict; must return soon and throw nothing.
using VerdictListener = std::function<void(const Verdict&)>;

}  // namespace kestrova
