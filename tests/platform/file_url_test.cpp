#include "platform/file_url.h"

#include <gtest/gtest.h>

namespace kestrova {

TEST(FileUrl, EncodesEveryByteThatAPathOfAUrlMayNotHold) {
  EXPECT_EQ(fileUrlString("/a b/\xc3\xa7%\n?.jpg"), "file:///a%20b/%C3%A7%25%0A%3F.jpg");
}

TEST(FileUrl, LeadsBackToThePathForEveryByte) {
  std::string name = "/";
  for (int byte = 1; byte < 256; ++byte) name += static_cast<char>(byte);
  EXPECT_EQ(pathOfFileUrl(fileUrlString(name)), Path(name));
}

TEST(FileUrl, RefusesWhatIsNotAFileUrlOfAnAbsolutePath) {
  for (const char* url : {"", "/a", "http://host/a", "file:/a", "file://", "file://relative", "file:///a%2",
                          "file:///a%zz", "file:///%00"}) {
    EXPECT_FALSE(pathOfFileUrl(url).has_value()) << url;
  }
}

TEST(FileUrl, LeavesATextWithABrokenEscapeAsItIs) {
  EXPECT_EQ(removingPercentEncoding("a%20b"), "a b");
  EXPECT_EQ(removingPercentEncoding("100%"), "100%");
}

}  // namespace kestrova
