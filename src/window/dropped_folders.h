#pragma once

#include "platform/file_manager.h"

#include <vector>

class QMimeData;

namespace kestrova {

/// The local folders among the dragged items, in their order, without trailing slashes; everything else is
/// ignored.
std::vector<Path> foldersIn(const QMimeData& dragged);

}  // namespace kestrova
