#include "report/json_line.h"

#include "report/json_path.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace kestrova::report {

namespace {

std::string lineWith(std::string_view text) {
  JsonLine line;
  line.putText("a", text);
  return std::move(line).finish();
}

}  // namespace

TEST(JsonLine, IsAnObjectOfWhatWasPut) {
  JsonLine line;
  line.putText("text", "b");
  line.putNumber("number", 18446744073709551615U);
  const std::vector<Path> paths{"x", "\xff"};
  line.putPaths("paths", paths);
  line.putPaths("none", {});
  EXPECT_EQ(std::move(line).finish(),
            "{\"text\":\"b\",\"number\":18446744073709551615,\"paths\":[{\"path\":\"x\"},"
            "{\"path\":\"\xef\xbf\xbd\",\"pathBytes\":\"/w==\"}],\"none\":[]}\n");
  EXPECT_EQ(JsonLine().finish(), "{}\n");
}

TEST(JsonLine, ReadsBackAnyText) {
  std::string all;
  for (int c = 1; c < 128; ++c) all += static_cast<char>(c);
  for (const std::string& text : {all, std::string("\xc3\xa4 \xf0\x9f\x93\xb7"), std::string()}) {
    const auto object = QJsonDocument::fromJson(QByteArray::fromStdString(lineWith(text))).object();
    EXPECT_EQ(object[QLatin1String("a")].toString().toStdString(), text);
  }
}

TEST(JsonLine, KeepsThePathsBytes) {
  for (const char* bytes : {"/plain", "/\xff/a\"b", "\xEF\xBB\xBFmark", "/\xed\xa0\x80"}) {
    JsonLine line;
    line.putPath("p", bytes);
    const std::string text = std::move(line).finish();
    const auto object = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    EXPECT_EQ(pathIn(object, QStringLiteral("p")), Path(bytes)) << text;
    EXPECT_EQ(object.contains(QLatin1String("pBytes")), std::string_view(bytes) != "/plain");
  }
}

}  // namespace kestrova::report
