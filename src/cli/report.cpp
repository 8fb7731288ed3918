#include "cli/report.h"

#include "model/size_text.h"
#include "platform/printable_text.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova::cli {

namespace {

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
  if (summary.end == RunEnd::nothingFound) return QStringLiteral("Nothing to organise was found.\n");
  const QString failures =
      failedFiles(summary) > 0 ? QStringLiteral(", but not all files could be written") : QString();
  return QStringLiteral("%1%2 (%3)\n").arg(printableText(summary.status), failures, seconds(summary.elapsed));
}

QJsonObject json(const Amount& amount) {
  return {{QStringLiteral("files"), static_cast<qint64>(amount.files)},
          {QStringLiteral("bytes"), static_cast<qint64>(amount.bytes)}};
}

QString nameOf(RunEnd end) {
  switch (end) {
    case RunEnd::completed:
      return QStringLiteral("completed");
    case RunEnd::nothingFound:
      return QStringLiteral("nothing-to-do");
    case RunEnd::stopped:
      return QStringLiteral("stopped");
    case RunEnd::outOfSpace:
    case RunEnd::error:
      return QStringLiteral("failed");
  }
  return {};
}

bool hasFailed(RunEnd end) { return end == RunEnd::outOfSpace || end == RunEnd::error; }

const auto program = QStringLiteral("kestrova-cli: ");

QString line(const char* what, const Tally::Remark& remark) {
  return program + QLatin1String(what) + printableText(remark.source.native()) + QStringLiteral(": ") +
         printableText(remark.error) + u'\n';
}

}  // namespace

int exitStatus(const Summary& summary) {
  if (summary.end == RunEnd::stopped) return 130;
  return hasFailed(summary.end) || failedFiles(summary) > 0 ? 1 : 0;
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

QString errorLines(const Summary& summary, const std::vector<Tally::Remark>& remarks) {
  QString lines;
  for (const Tally::Remark& remark : remarks) {
    const bool isUnreadable = remark.outcome == Outcome::unreadable;
    if (traitsOf(remark.outcome).isError)
      lines += line(isUnreadable ? "not readable: " : "not written: ", remark);
  }
  if (hasFailed(summary.end)) lines += program + printableText(summary.status) + u'\n';
  return lines;
}

QString noticeLines(const std::vector<Tally::Remark>& remarks) {
  QString lines;
  for (const Tally::Remark& remark : remarks) {
    if (!traitsOf(remark.outcome).isError) lines += line("copied as it is: ", remark);
  }
  return lines;
}

}  // namespace kestrova::cli
