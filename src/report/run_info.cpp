#include "report/run_info.h"

#include "report/json_path.h"
#include "report/run_folder.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace kestrova::report {

namespace {

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

std::string textIn(const QJsonObject& object, const char* key) {
  return object.value(QLatin1String(key)).toString().toStdString();
}

QJsonObject objectWith(const Path& path) {
  QJsonObject object;
  putPath(object, QStringLiteral("path"), path);
  return object;
}

}  // namespace

FileResult<void> writeRunInfo(FileManager& files, const Path& run, const RunInfo& info) {
  QJsonArray sources;
  for (const Path& source : info.sources) sources.append(objectWith(source));
  QJsonObject object{{QStringLiteral("version"), text(info.version)},
                     {QStringLiteral("command"), text(info.command)},
                     {QStringLiteral("options"), info.options},
                     {QStringLiteral("sources"), sources},
                     {QStringLiteral("started"), text(info.started)}};
  putPath(object, QStringLiteral("target"), info.target);
  if (!info.ended.empty()) {
    object.insert(QStringLiteral("ended"), text(info.ended));
    object.insert(QStringLiteral("result"), text(info.result));
    object.insert(QStringLiteral("counts"), info.counts);
    if (!info.recordError.empty()) object.insert(QStringLiteral("recordError"), text(info.recordError));
  }
  if (!info.takenBack.empty()) object.insert(QStringLiteral("takenBack"), text(info.takenBack));
  const QByteArray json = QJsonDocument(object).toJson();
  return files.writeDataReplacing(
      {reinterpret_cast<const std::uint8_t*>(json.data()), static_cast<std::size_t>(json.size())},
      infoFile(run));
}

std::optional<RunInfo> readRunInfo(const FileManager& files, const Path& run) {
  const auto bytes = files.readFile(infoFile(run));
  if (!bytes) return std::nullopt;
  const QByteArray json(reinterpret_cast<const char*>(bytes->data()), static_cast<qsizetype>(bytes->size()));
  const QJsonObject object = QJsonDocument::fromJson(json).object();
  const auto target = pathIn(object, QStringLiteral("target"));
  if (!target) return std::nullopt;
  RunInfo info;
  info.id = run.filename().native();
  info.version = textIn(object, "version");
  info.command = textIn(object, "command");
  info.options = object.value(QStringLiteral("options")).toObject();
  for (const auto& source : object.value(QStringLiteral("sources")).toArray()) {
    if (auto path = pathIn(source.toObject(), QStringLiteral("path")))
      info.sources.push_back(std::move(*path));
  }
  info.target = *target;
  info.started = textIn(object, "started");
  info.ended = textIn(object, "ended");
  info.result = textIn(object, "result");
  info.takenBack = textIn(object, "takenBack");
  info.counts = object.value(QStringLiteral("counts")).toObject();
  info.recordError = textIn(object, "recordError");
  return info;
}

}  // namespace kestrova::report
