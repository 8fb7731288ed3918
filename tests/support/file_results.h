#pragma once

#include "platform/file_error.h"

namespace kestrova::test {

/// An operation's error code; 0 when it succeeded.
template <typename Value>
int codeOf(const FileResult<Value>& result) {
  return result ? 0 : result.error().code;
}

}  // namespace kestrova::test
