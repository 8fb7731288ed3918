#pragma once

#include <string>

#include <gtest/gtest.h>

namespace kestrova::test {

/// What `call` writes to standard error.
template <typename Call>
std::string errorOutputOf(Call call) {
  testing::internal::CaptureStderr();
  call();
  return testing::internal::GetCapturedStderr();
}

}  // namespace kestrova::test
