#include "execution/source_check.h"

#include <cerrno>

namespace kestrova {

SourceCheck checkAgainst(const std::optional<PlannedSource>& planned) {
  if (!planned || !planned->modified) return nullptr;
  return [&planned = *planned](const FileAttributes& source) -> FileResult<void> {
    if (source.size == planned.size && source.modified == *planned.modified) return {};
    return tl::make_unexpected(FileError{EBUSY, "the file has changed since the run was planned"});
  };
}

}  // namespace kestrova
