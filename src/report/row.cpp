#include "report/row.h"

#include "platform/file_reader.h"
#include "report/json_line.h"
#include "report/json_path.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

namespace kestrova::report {

namespace {

QString keyOf(const char* key) { return QString::fromLatin1(key); }

void putText(JsonLine& line, const char* key, const std::string& text) {
  if (!text.empty()) line.putText(key, text);
}

void putNumber(JsonLine& line, const char* key, const std::optional<std::uint64_t>& number) {
  if (number) line.putNumber(key, *number);
}

std::string textIn(const QJsonObject& object, const char* key) {
  return object.value(keyOf(key)).toString().toStdString();
}

std::optional<std::uint64_t> numberIn(const QJsonObject& object, const char* key) {
  const qint64 number = object.value(keyOf(key)).toInteger(-1);
  return number < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(number));
}

std::optional<Outcome> outcomeOf(std::string_view word) {
  for (int i = 0; i <= static_cast<int>(Outcome::notReached); ++i) {
    const auto outcome = static_cast<Outcome>(i);
    if (traitsOf(outcome).word == word) return outcome;
  }
  return std::nullopt;
}

std::vector<Path> foldersIn(const QJsonObject& object) {
  std::vector<Path> folders;
  for (const auto& holder : object.value(keyOf("createdFolders")).toArray()) {
    if (auto folder = pathIn(holder.toObject(), keyOf("path"))) folders.push_back(std::move(*folder));
  }
  return folders;
}

/// Texts and their keys: writing and reading go through one table.
struct TextField {
  const char* key;
  std::string FileRow::*text;
};
constexpr TextField textFields[] = {
    {"sourceModified", &FileRow::sourceModified},
    {"targetModified", &FileRow::targetModified},
    {"date", &FileRow::date},
    {"dateFrom", &FileRow::dateFrom},
    {"sourceSha256", &FileRow::sourceSha256},
    {"targetSha256", &FileRow::targetSha256},
    {"atRisk", &FileRow::atRisk},
    {"reason", &FileRow::reason},
};

void put(JsonLine& line, const FileRow& row) {
  line.putText("kind", "file");
  line.putPath("source", row.source);
  line.putText("verdict", traitsOf(row.verdict).word);
  if (row.target) line.putPath("target", *row.target);
  if (row.original) line.putPath("original", *row.original);
  putNumber(line, "sourceSize", row.sourceSize);
  putNumber(line, "targetSize", row.targetSize);
  for (const auto& [key, text] : textFields) putText(line, key, row.*text);
  if (row.pagesLeftOut > 0) line.putNumber("pagesLeftOut", static_cast<std::uint64_t>(row.pagesLeftOut));
  if (!row.createdFolders.empty()) line.putPaths("createdFolders", row.createdFolders);
}

void put(JsonLine& line, const UnreadableRow& row) {
  line.putText("kind", "unreadable");
  line.putPath("source", row.source);
  line.putText("reason", row.reason);
}

void put(JsonLine& line, const LeftBehindRow& row) {
  line.putText("kind", "left-behind");
  line.putPath("source", row.source);
  line.putText("extension", row.extension);
  line.putNumber("sourceSize", row.sourceSize);
}

std::optional<Row> fileRowOf(const QJsonObject& object, Path source) {
  const auto verdict = outcomeOf(textIn(object, "verdict"));
  if (!verdict) return std::nullopt;
  FileRow row{.source = std::move(source), .verdict = *verdict};
  row.target = pathIn(object, keyOf("target"));
  row.original = pathIn(object, keyOf("original"));
  row.sourceSize = numberIn(object, "sourceSize");
  row.targetSize = numberIn(object, "targetSize");
  for (const auto& [key, text] : textFields) row.*text = textIn(object, key);
  row.pagesLeftOut = object.value(keyOf("pagesLeftOut")).toInt();
  row.createdFolders = foldersIn(object);
  return row;
}

/// Cuts the whole lines off the front of a text and visits them; false when the visitor has had enough.
bool takeLines(std::string& text, const std::function<bool(const Row&)>& visit) {
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
    const auto row = rowOf(std::string_view(text).substr(begin, end - begin));
    begin = end + 1;
    if (row && !visit(*row)) return false;
  }
  text.erase(0, begin);
  return true;
}

}  // namespace

QJsonObject jsonOf(const Row& row) {
  return QJsonDocument::fromJson(QByteArray::fromStdString(lineOf(row))).object();
}

std::string lineOf(const Row& row) {
  JsonLine line;
  std::visit([&line](const auto& kind) { put(line, kind); }, row);
  return std::move(line).finish();
}

std::optional<Row> rowOf(std::string_view line) {
  const auto bytes = QByteArray::fromRawData(line.data(), static_cast<qsizetype>(line.size()));
  const QJsonObject object = QJsonDocument::fromJson(bytes).object();
  auto source = pathIn(object, keyOf("source"));
  if (!source) return std::nullopt;
  const QString kind = object.value(keyOf("kind")).toString();
  if (kind == keyOf("file")) return fileRowOf(object, std::move(*source));
  if (kind == keyOf("unreadable")) return UnreadableRow{std::move(*source), textIn(object, "reason")};
  if (kind == keyOf("left-behind"))
    return LeftBehindRow{std::move(*source), textIn(object, "extension"),
                         numberIn(object, "sourceSize").value_or(0)};
  return std::nullopt;
}

FileResult<void> readRows(const Path& file, const std::function<bool(const Row&)>& visit) {
  auto reader = FileReader::open(file);
  if (!reader) return tl::make_unexpected(reader.error());
  Bytes piece(std::size_t{64} * 1024);
  std::string text;
  for (;;) {
    const auto count = reader->read(piece);
    if (!count) return tl::make_unexpected(count.error());
    if (*count == 0) return {};
    text.append(reinterpret_cast<const char*>(piece.data()), *count);
    if (!takeLines(text, visit)) return {};
  }
}

}  // namespace kestrova::report
