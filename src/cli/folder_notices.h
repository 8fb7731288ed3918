#pragma once

#include "scan/source_overlaps.h"

#include <string>

namespace kestrova::cli {

/// One line for each overlap, for the user.
std::string noticesOf(const std::vector<Overlap>& overlaps);

}  // namespace kestrova::cli
