#include "cli/report.h"

#include "model/size_text.h"
#include "platform/printable_text.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova::cli {

namespace {

using End = Summary::End;

QString row(const char* name, const Amount& amount) {
  return QStringLiteral("  %1%2%3\n")
      .arg(QLatin1String(name), -16)
      .arg(countText(amount.files), 10)
      .arg(sizeText(amount.bytes), 16);
}

QString heading(const char* name, const char* count = "", const char* size = "") {
  return QStringLiteral("%1%2%3")
             .arg(QLatin1String(name), -18)
             .arg(QLatin1String(count), 10)
             .arg(QLatin1String(size), 16)
             .trimmed() +
         u'\n';
}

QString seconds(std::chrono::milliseconds elapsed) {
  return QString::number(static_cast<double>(elapsed.count()) / 1000.0, 'f', 1) + QStringLiteral(" s");
}

std::int64_t failedFiles(const Summary& summary) { return summary.failed.files + summary.unreadable.files; }

QString closingLine(const Summary& summary) {
  if (summary.end == End::nothingToDo) return QStringLiteral("Nothing to organise was found.\n");
  const QString failures =
      failedFiles(summary) > 0 ? QStringLiteral(", but not all files could be written") : QString();
  return QStringLiteral("%1%2 (%3)\n").arg(printableText(summary.status), failures, seconds(summary.elapsed));
}

QJsonObject json(const Amount& amount) {
  return {{QStringLiteral("files"), static_cast<qint64>(amount.files)},
          {QStringLiteral("bytes"), static_cast<qint64>(amount.bytes)}};
}

QString nameOf(End end) {
  switch (end) {
    case End::completed:
      return QStringLiteral("completed");
    case End::nothingToDo:
      return QStringLiteral("nothing-to-do");
    case End::stopped:
      return QStringLiteral("stopped");
    case End::failed:
      break;
  }
  return QStringLiteral("failed");
}

}  // namespace

int exitStatus(const Summary& summary) {
  if (summary.end == End::stopped) return 130;
  return summary.end == End::failed || failedFiles(summary) > 0 ? 1 : 0;
}

QString summaryTable(const Summary& summary) {
  return heading("Found", "Files", "Size") + row("Photos", summary.found.photos) +
         row("Videos", summary.found.videos) + row("Total", summary.found.total) +
         row("Duplicates", summary.duplicates) + row("Passed over", summary.sameContent) +
         heading("Written") + row("Photos", summary.written.photos) + row("Videos", summary.written.videos) +
         row("Rewritten", summary.rewritten) + row("Total", summary.written.total) + heading("Not written") +
         row("Already there", summary.alreadyThere) + row("Small", summary.small) +
         row("Name taken", summary.nameTaken) + row("Failed", summary.failed) +
         row("Unreadable", summary.unreadable) + row("Not reached", summary.notReached) + u'\n' +
         closingLine(summary);
}

QByteArray summaryJson(const Summary& summary) {
  const auto group = [](const auto& amounts) {
    return QJsonObject{{QStringLiteral("photos"), json(amounts.photos)},
                       {QStringLiteral("videos"), json(amounts.videos)},
                       {QStringLiteral("total"), json(amounts.total)}};
  };
  const QJsonObject object{
      {QStringLiteral("result"), nameOf(summary.end)},
      {QStringLiteral("status"), summary.status},
      {QStringLiteral("seconds"), static_cast<double>(summary.elapsed.count()) / 1000.0},
      {QStringLiteral("found"), group(summary.found)},
      {QStringLiteral("duplicates"), json(summary.duplicates)},
      {QStringLiteral("passedOver"), json(summary.sameContent)},
      {QStringLiteral("written"), group(summary.written)},
      {QStringLiteral("rewritten"), json(summary.rewritten)},
      {QStringLiteral("alreadyThere"), json(summary.alreadyThere)},
      {QStringLiteral("small"), json(summary.small)},
      {QStringLiteral("exists"), json(summary.nameTaken)},
      {QStringLiteral("failed"), json(summary.failed)},
      {QStringLiteral("unreadable"), json(summary.unreadable)},
      {QStringLiteral("notReached"), json(summary.notReached)},
  };
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString errorLines(const Summary& summary, const std::vector<Tally::Failure>& failures) {
  const QString program = QStringLiteral("kestrova-cli: ");
  QString lines;
  for (const auto& [source, outcome, error] : failures) {
    const auto what =
        outcome == Outcome::unreadable ? QStringLiteral("not readable: ") : QStringLiteral("not written: ");
    lines +=
        program + what + printableText(source.native()) + QStringLiteral(": ") + printableText(error) + u'\n';
  }
  if (summary.end == End::failed) lines += program + printableText(summary.status) + u'\n';
  return lines;
}

}  // namespace kestrova::cli
