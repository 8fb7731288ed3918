#pragma once

#include <string_view>

namespace kestrova {

/// What became of a source file that the media filter let pass.
enum class Outcome {
  copied,
  resized,      ///< rewritten, smaller
  rewritten,    ///< rewritten at its own size
  duplicate,    ///< equal to the first file of its size
  sameContent,  ///< equal to a later file of its size
  small,        ///< left out by a filter
  exists,       ///< the target was there before the run, or another program has created it since
  nameTaken,    ///< another file of the run has the target's name
  failed,       ///< could not be written
  unreadable,   ///< could not be read
  notReached,   ///< the run ended first
};

/// What counting and reporting need to know about an outcome.
struct OutcomeTraits {
  std::string_view word;   ///< in records
  bool isSettled = false;  ///< the file was to be organised, and is finished
  bool isError = false;    ///< the file could not be handled as intended; the verdict says why
};

/// The table of outcomes. The compiler warns about an outcome without a line.
constexpr OutcomeTraits traitsOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::copied:
      return {.word = "copied", .isSettled = true};
    case Outcome::resized:
      return {.word = "resized", .isSettled = true};
    case Outcome::rewritten:
      return {.word = "rewritten", .isSettled = true};
    case Outcome::duplicate:
      return {.word = "duplicate"};
    case Outcome::sameContent:
      return {.word = "same-content"};
    case Outcome::small:
      return {.word = "small", .isSettled = true};
    case Outcome::exists:
      return {.word = "exists", .isSettled = true};
    case Outcome::nameTaken:
      return {.word = "name-taken", .isSettled = true};
    case Outcome::failed:
      return {.word = "failed", .isSettled = true, .isError = true};
    case Outcome::unreadable:
      return {.word = "unreadable", .isSettled = true, .isError = true};
    case Outcome::notReached:
      return {.word = "not-reached"};
  }
  return {};
}

}  // namespace kestrova
