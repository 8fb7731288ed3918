#pragma once

#include "report/row.h"

#include <string>

/// Rows as comma-separated values (RFC 4180, but with the line ends of Unix), for spreadsheets. The columns
/// are the keys of the JSON rows.
namespace kestrova::report {

/// The names of the columns, as the first line.
std::string csvHeader();

/// One line, with its line end.
std::string csvLineOf(const Row& row);

}  // namespace kestrova::report
