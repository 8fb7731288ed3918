#include "platform/log.h"

#include "support/error_output.h"

#include <gtest/gtest.h>

namespace kestrova {

TEST(Log, ShowsAPathThatIsNotUtf8WithReplacementCharacters) {
  EXPECT_EQ(displayPath("/a/\xff.jpg"),
            QStringLiteral("/a/") + QChar::ReplacementCharacter + QStringLiteral(".jpg"));
}

TEST(Log, WritesATextWithALineEndAsOneLine) {
  installLog();
  EXPECT_EQ(test::errorOutputOf([] { log(QStringLiteral("a\nb\x01")); }), "a\\nb\\x01\n");
}

}  // namespace kestrova
