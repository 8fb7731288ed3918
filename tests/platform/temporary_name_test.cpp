#include "platform/temporary_name.h"

#include "platform/file_descriptor.h"
#include "platform/file_error.h"
#include "platform/long_path.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace kestrova {

namespace {

struct TemporaryNames : testing::Test {
  /// The name that a new file gets; how many were tried.
  std::string take(int number) {
    tried = 0;
    const auto name = takeTemporaryName(
        folder.get(),
        [this](const char* free) -> FileResult<int> {
          ++tried;
          file = FileDescriptor(::openat(folder.get(), free, O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600));
          if (!file) return failure();
          return file.get();
        },
        number);
    return name ? *name : name.error().message;
  }

  const test::TemporaryFolder root;
  const FileDescriptor folder = openPlace(root.path()).value();
  FileDescriptor file;
  int tried = 0;
};

}  // namespace

TEST_F(TemporaryNames, BeginWhereTheyAreToldTo) {
  EXPECT_EQ(take(0), ".kestrova-0.part");
  const FileDescriptor kept = std::move(file);
  file = FileDescriptor();
  EXPECT_EQ(take(5), ".kestrova-5.part");
  EXPECT_EQ(tried, 1);
}

TEST_F(TemporaryNames, GoOnToAFreeOne) {
  EXPECT_EQ(take(0), ".kestrova-0.part");
  const FileDescriptor kept = std::move(file);
  file = FileDescriptor();
  EXPECT_EQ(take(0), ".kestrova-1.part");
}

}  // namespace kestrova
