#pragma once

#include "report/path_reason.h"

#include <QString>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::cli {

/// Writes the text to the stream at once.
void print(std::FILE* stream, std::string_view text);

/// "kestrova-cli: ", what went wrong, where and why, on one line, safe for a terminal.
QString problemLine(const char* what, const Path& path, const std::string& reason);

/// One line each.
QString problemLines(const char* what, const std::vector<report::PathReason>& list);

/// Reports on standard error why the command cannot be run, and how to get help. Returns the exit status of
/// wrong usage.
int refuse(const std::string& reason);

}  // namespace kestrova::cli
