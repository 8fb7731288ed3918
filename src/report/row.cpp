#include "report/row.h"

#include "platform/file_reader.h"
#include "report/json_path.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova::report {

namespace {

QString keyOf(const char* key) { return QString::fromLatin1(key); }

void putText(QJsonObject& object, const char* key, const std::string& text) {
  if (!text.empty()) object.insert(keyOf(key), QString::fromStdString(text));
}

void putNumber(QJsonObject& object, const char* key, const std::optional<std::uint64_t>& number) {
  if (number) object.insert(keyOf(key), static_cast<qint64>(*number));
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

/// Each as an object of its own, as a path may need two keys.
void putFolders(QJsonObject& object, const std::vector<Path>& folders) {
  if (folders.empty()) return;
  QJsonArray array;
  for (const Path& folder : folders) {
    QJsonObject holder;
    putPath(holder, keyOf("path"), folder);
    array.append(holder);
  }
  object.insert(keyOf("createdFolders"), array);
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

QJsonObject objectOf(const FileRow& row) {
  QJsonObject object{{keyOf("kind"), keyOf("file")}};
  putPath(object, keyOf("source"), row.source);
  putText(object, "verdict", std::string(traitsOf(row.verdict).word));
  if (row.target) putPath(object, keyOf("target"), *row.target);
  if (row.original) putPath(object, keyOf("original"), *row.original);
  putNumber(object, "sourceSize", row.sourceSize);
  putNumber(object, "targetSize", row.targetSize);
  for (const auto& [key, text] : textFields) putText(object, key, row.*text);
  if (row.pagesLeftOut != 0) object.insert(keyOf("pagesLeftOut"), row.pagesLeftOut);
  putFolders(object, row.createdFolders);
  return object;
}

QJsonObject objectOf(const UnreadableRow& row) {
  QJsonObject object{{keyOf("kind"), keyOf("unreadable")}};
  putPath(object, keyOf("source"), row.source);
  object.insert(keyOf("reason"), QString::fromStdString(row.reason));
  return object;
}

QJsonObject objectOf(const LeftBehindRow& row) {
  QJsonObject object{{keyOf("kind"), keyOf("left-behind")}};
  putPath(object, keyOf("source"), row.source);
  object.insert(keyOf("extension"), QString::fromStdString(row.extension));
  putNumber(object, "sourceSize", row.sourceSize);
  return object;
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
  return std::visit([](const auto& kind) { return objectOf(kind); }, row);
}

std::string lineOf(const Row& row) {
  return (QJsonDocument(jsonOf(row)).toJson(QJsonDocument::Compact) + '\n').toStdString();
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
