#pragma once

#include "cli/option_parser.h"

#include <string>
#include <string_view>

namespace kestrova::cli {

/// What `runs` is asked to do.
struct RunsArguments {
  bool json = false;
};

constexpr std::string_view runsHelp = R"(runs [--json]
  Lists the recorded runs, the newest first.
  --json                 print the list as one JSON array
)";

tl::expected<RunsArguments, std::string> parseRuns(Words words, const Path& currentFolder);

/// Prints the list and returns the exit status.
int run(const RunsArguments& arguments);

}  // namespace kestrova::cli
