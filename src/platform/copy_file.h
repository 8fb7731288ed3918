#pragma once

#include "platform/regular_file.h"

namespace kestrova {

/// Fails when the file was changed since it was opened: what was read may be half old, half new. The status
/// change time shows this even if a writer has restored the modification time.
FileResult<void> checkUnchanged(const RegularFile& source);

/// Copies data, permissions, times and extended attributes into an open new file. Whether the source was
/// changed in the meantime is to be checked after that.
FileResult<void> copyWhole(const RegularFile& source, int to);

}  // namespace kestrova
