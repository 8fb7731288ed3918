#pragma once

#include "cli/option_parser.h"

#include <string>
#include <string_view>

namespace kestrova::cli {

/// What `undo` is asked to do.
struct UndoArguments {
  std::string run = {};  ///< its id; empty: the last one that can be taken back
  bool isDryRun = false;
  bool deletes = false;  ///< for good, rather than into the trash
  bool json = false;
};

constexpr std::string_view undoHelp = R"(undo [RUN] [OPTION...]
  Takes back what a run wrote, by default the last one, where the sources still have it.
  --dry-run              only show what would be taken back
  --delete               delete files for good, rather than moving them to the trash
  --json                 print the result as one JSON object
)";

tl::expected<UndoArguments, std::string> parseUndo(Words words, const Path& currentFolder);

/// Takes a run back, names what stays and why, and returns the exit status.
int run(const UndoArguments& arguments);

}  // namespace kestrova::cli
