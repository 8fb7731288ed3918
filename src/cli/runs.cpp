#include "cli/runs.h"

#include "cli/output.h"
#include "model/size_text.h"
#include "platform/printable_text.h"
#include "report/json_amount.h"
#include "report/json_path.h"
#include "report/run_folder.h"
#include "report/run_list.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace kestrova::cli {

namespace {

using report::RecordedRun;

QString resultOf(const RecordedRun& run) {
  if (run.isGoingOn) return QStringLiteral("running");
  if (run.info.ended.empty()) return QStringLiteral("broken-off");
  return QString::fromStdString(run.info.result);
}

QString shown(const Path& path) { return printableText(path.native()); }

/// A list of texts. Where one of them is lossy, "sourcesBytes" has all of them in base64.
void putSources(QJsonObject& object, const std::vector<Path>& sources) {
  QJsonArray texts;
  QJsonArray bytes;
  bool isLossy = false;
  for (const Path& source : sources) {
    const QString text = QString::fromStdString(source.native());
    isLossy = isLossy || text.toStdString() != source.native();
    texts.append(text);
    bytes.append(QString::fromLatin1(QByteArray::fromStdString(source.native()).toBase64()));
  }
  object.insert(QStringLiteral("sources"), texts);
  if (isLossy) object.insert(QStringLiteral("sourcesBytes"), bytes);
}

QJsonObject jsonOf(const RecordedRun& run) {
  QJsonObject object{{QStringLiteral("id"), QString::fromStdString(run.info.id)},
                     {QStringLiteral("started"), QString::fromStdString(run.info.started)},
                     {QStringLiteral("ended"), QString::fromStdString(run.info.ended)},
                     {QStringLiteral("result"), resultOf(run)},
                     {QStringLiteral("written"), report::jsonOf(run.written)}};
  putSources(object, run.info.sources);
  report::putPath(object, QStringLiteral("target"), run.info.target);
  return object;
}

QString lineOf(const RecordedRun& run) {
  QStringList sources;
  for (const Path& source : run.info.sources) sources << shown(source);
  const auto written =
      QStringLiteral("%1 files, %2").arg(countText(run.written.files), sizeText(run.written.bytes));
  return QStringLiteral("%1  %2  %3  %4 -> %5\n")
      .arg(QString::fromStdString(run.info.id), -19)
      .arg(resultOf(run), -13)
      .arg(written, 26)
      .arg(sources.join(QStringLiteral(", ")), shown(run.info.target));
}

}  // namespace

tl::expected<RunsArguments, std::string> parseRuns(Words words, const Path& currentFolder) {
  RunsArguments arguments;
  OptionParser parser(currentFolder);
  parser.flag("--json", arguments.json);
  if (const Step parsed = parser.parse(words); !parsed) return tl::unexpected(parsed.error());
  return arguments;
}

int run(const RunsArguments& arguments) {
  const auto folder = report::runsFolder();
  const auto runs = folder ? report::recordedRuns(*folder, *systemFileManager()) : std::vector<RecordedRun>();
  QJsonArray array;
  for (const RecordedRun& run : runs) {
    if (arguments.json) {
      array.append(jsonOf(run));
    } else {
      print(stdout, lineOf(run).toStdString());
    }
  }
  if (arguments.json) {
    print(stdout, (QJsonDocument(array).toJson(QJsonDocument::Compact) + '\n').toStdString());
  } else if (runs.empty()) {
    print(stdout, "No run is recorded.\n");
  }
  return 0;
}

}  // namespace kestrova::cli
