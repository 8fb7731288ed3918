#include "execution/source_check.h"

#include <cerrno>

namespace kestrova {

SourceCheck checkAgainst(const PlannedSource& planned) {
  if (!planned.modified) return nullptr;
  return
      [size = planned.size, modified = *planned.modified](const FileAttributes& source) -> FileResult<void> {
        if (source.size == size && source.modified == modified) return {};
        return tl::make_unexpected(FileError{EBUSY, "the file has changed since the run was planned"});
      };
}

}  // namespace kestrova
