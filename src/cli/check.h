#pragma once

#include "cli/option_parser.h"

#include <string_view>
#include <vector>

namespace kestrova::cli {

/// What `check` is asked to do. Paths are absolute.
struct CheckArguments {
  std::vector<Path> sources = {};
  Path target = {};
  Path rescue = {};  ///< empty: nothing is rescued
  bool json = false;
};

constexpr std::string_view checkHelp = R"(check SOURCE... --in TARGET [OPTION...]
  Says whether each photo and video in the sources is in TARGET, byte for byte.
  --in TARGET            the folder to look in
  --rescue FOLDER        copy what is not in TARGET, and all other files, into FOLDER as they are
  --json                 print the result as one JSON object
)";

tl::expected<CheckArguments, std::string> parseCheck(Words words, const Path& currentFolder);

/// Compares, prints what is missing and whether the sources may be erased, and returns the exit status.
int run(const CheckArguments& arguments);

}  // namespace kestrova::cli
