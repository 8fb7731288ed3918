#include "execution/error_codes.h"

#include <cerrno>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

FileError error(int number) { return {number, "on purpose"}; }

}  // namespace

TEST(ErrorCodes, TellAFullVolumeByAnotherNumberWhenCopyingThanWhenWriting) {
  for (const int full : {ENOSPC, EDQUOT}) {
    EXPECT_EQ(copyErrorCode(error(full)), 512);
    EXPECT_EQ(writeErrorCode(error(full)), 640);
  }
}

TEST(ErrorCodes, TellAnExistingTargetByOneNumber) {
  EXPECT_EQ(copyErrorCode(error(EEXIST)), 516);
  EXPECT_EQ(writeErrorCode(error(EEXIST)), 516);
}

TEST(ErrorCodes, KeepTheSystemsNumberOfAnyOtherError) {
  for (const int number : {ENOENT, EIO, EROFS}) EXPECT_EQ(copyErrorCode(error(number)), number);
  EXPECT_EQ(copyErrorCode({ENOSPC, "on purpose", FileError::Kind::unreadable}), ENOSPC);
}

}  // namespace kestrova
