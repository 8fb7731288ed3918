#pragma once

#include "cli/check.h"
#include "cli/option_parser.h"
#include "cli/organise.h"
#include "cli/runs.h"
#include "cli/undo.h"

#include <string>
#include <variant>

namespace kestrova::cli {

struct HelpRequest {};
struct VersionRequest {};

/// What the command line asks for. Each command has a type of its own, and a function `run` that takes it and
/// returns the exit status.
using Arguments = std::variant<HelpRequest, VersionRequest, OrganiseArguments, RunsArguments, CheckArguments,
                               UndoArguments>;

/// Reads the words that follow the program's name. The command is the first that does not begin with "-". No
/// file is looked at.
tl::expected<Arguments, std::string> parseArguments(Words words, const Path& currentFolder);

/// What --help prints.
std::string helpText();

}  // namespace kestrova::cli
