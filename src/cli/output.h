#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace kestrova::cli {

/// Writes the text to the stream at once.
void print(std::FILE* stream, std::string_view text);

/// Reports on standard error why the command cannot be run, and how to get help. Returns the exit status of
/// wrong usage.
int refuse(const std::string& reason);

}  // namespace kestrova::cli
