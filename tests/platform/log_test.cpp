#include "platform/log.h"

#include <gtest/gtest.h>

namespace kestrova {

TEST(Log, ShowsAPathThatIsNotUtf8WithReplacementCharacters) {
  EXPECT_EQ(displayPath("/a/\xff.jpg"),
            QStringLiteral("/a/") + QChar::ReplacementCharacter + QStringLiteral(".jpg"));
}

TEST(Log, WritesATextWithALineEndAsOneLine) {
  installLog();
  testing::internal::CaptureStderr();
  log(QStringLiteral("a\nb\x01"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "a\\nb\\x01\n");
}

}  // namespace kestrova
