#include "cli/folder_notices.h"

#include "cli/option_parser.h"

namespace kestrova::cli {

namespace {

std::string textOf(const Overlap& overlap) {
  const std::string source = cli::quoted(overlap.source.native());
  const std::string other = cli::quoted(overlap.other.native());
  switch (overlap.kind) {
    case Overlap::Kind::sourceTwice:
      return source + " is listed twice: its files count as duplicates of themselves";
    case Overlap::Kind::sourceInsideSource:
      return source + " lies in the source " + other + ": its files count as duplicates of themselves";
    case Overlap::Kind::sourceInsideTarget:
      return "the source " + source + " lies in the target " + other + ": its files also stay there";
    case Overlap::Kind::targetInsideSource:
      return "the target " + other + " lies in the source " + source + ": what it holds is found again";
    case Overlap::Kind::targetIsSource:
      return "the target " + other + " is a source as well: its files also stay where they are";
  }
  return {};
}

}  // namespace

std::string noticesOf(const std::vector<Overlap>& overlaps) {
  std::string lines;
  for (const Overlap& overlap : overlaps) lines += "kestrova-cli: " + textOf(overlap) + '\n';
  return lines;
}

}  // namespace kestrova::cli
