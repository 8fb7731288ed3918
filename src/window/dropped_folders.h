#pragma once

#include "platform/file_manager.h"

#include <vector>

class QMimeData;

namespace kestrova {

/// The local folders among what is being dragged, in its order, without closing slashes; whatever else it is
/// or holds is passed over.
std::vector<Path> foldersIn(const QMimeData& dragged);

}  // namespace kestrova
