#pragma once

#include "platform/file_error.h"

namespace kestrova::test {

/// An operation's error code; 0 when it succeeded.
inline int codeOf(const FileResult<void>& result) { return result ? 0 : result.error().code; }

}  // namespace kestrova::test
