#include "cli/undo_report.h"

#include "cli/output.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace kestrova::cli {

namespace {

QString counted(std::int64_t count, const char* one, const char* many) {
  return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

QString whereTo(const UndoOutcome& outcome) {
  if (outcome.isDryRun) return QStringLiteral("Would take back");
  return outcome.deletes ? QStringLiteral("Deleted") : QStringLiteral("Moved to the trash");
}

}  // namespace

QString undoText(const UndoOutcome& outcome) {
  const auto& result = outcome.result;
  QStringList parts{counted(result.removed, "file", "files")};
  if (result.folders > 0) parts << counted(result.folders, "folder", "folders");
  if (result.alreadyGone > 0) parts << QStringLiteral("%1 already gone").arg(result.alreadyGone);
  if (!result.refused.empty()) parts << QStringLiteral("%1 refused").arg(result.refused.size());
  if (result.wasStopped) parts << QStringLiteral("stopped: run it again to go on");
  return QStringLiteral("%1 of the run %2: %3\n")
      .arg(whereTo(outcome), QString::fromStdString(outcome.run), parts.join(QStringLiteral(", ")));
}

QByteArray undoJson(const UndoOutcome& outcome) {
  const QJsonObject object{
      {QStringLiteral("run"), QString::fromStdString(outcome.run)},
      {QStringLiteral("dryRun"), outcome.isDryRun},
      {QStringLiteral("removed"), static_cast<qint64>(outcome.result.removed)},
      {QStringLiteral("alreadyGone"), static_cast<qint64>(outcome.result.alreadyGone)},
      {QStringLiteral("folders"), static_cast<qint64>(outcome.result.folders)},
      {QStringLiteral("refused"), report::jsonOf(outcome.result.refused, QStringLiteral("target"))}};
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString refusalLines(const UndoOutcome& outcome) {
  return problemLines("not taken back: ", outcome.result.refused);
}

int exitStatus(const UndoOutcome& outcome) {
  if (outcome.result.wasStopped) return 130;
  return outcome.result.refused.empty() ? 0 : 1;
}

}  // namespace kestrova::cli
