#include "report/csv_line.h"

#include <QJsonArray>
#include <QStringList>
#include <array>

namespace kestrova::report {

namespace {

constexpr std::array columns{
    "kind",           "verdict",        "source",       "target",       "sourceSize",   "targetSize",
    "sourceModified", "targetModified", "date",         "dateFrom",     "original",     "extension",
    "reason",         "atRisk",         "pagesLeftOut", "sourceSha256", "targetSha256", "createdFolders",
    "sourceBytes",    "targetBytes",    "originalBytes"};

QString textOf(const QJsonValue& value) {
  if (value.isDouble()) return QString::number(value.toInteger());
  if (!value.isArray()) return value.toString();
  QStringList texts;
  for (const auto& element : value.toArray()) texts << element[QLatin1String("path")].toString();
  return texts.join(u';');
}

std::string field(const QJsonValue& value) {
  QString text = textOf(value);
  const bool needsQuotes =
      text.contains(u',') || text.contains(u'"') || text.contains(u'\n') || text.contains(u'\r');
  if (!needsQuotes) return text.toStdString();
  return '"' + text.replace(u'"', QStringLiteral("\"\"")).toStdString() + '"';
}

}  // namespace

std::string csvHeader() {
  std::string line;
  for (const char* column : columns) line.append(line.empty() ? "" : ",").append(column);
  return line + '\n';
}

std::string csvLineOf(const Row& row) {
  const QJsonObject object = jsonOf(row);
  std::string line;
  for (const char* column : columns) line.append(field(object.value(QLatin1String(column)))).append(1, ',');
  line.back() = '\n';
  return line;
}

}  // namespace kestrova::report
