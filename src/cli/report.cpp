#include "cli/report.h"

#include "cli/output.h"
#include "model/size_text.h"
#include "platform/printable_text.h"
#include "report/json_amount.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova::cli {

namespace {

using report::jsonOf;

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
  const QString unread =
      summary.unreadableFolders.empty() ? QString() : QStringLiteral(", but not all folders could be read");
  if (summary.end == RunEnd::nothingFound) {
    return QStringLiteral("Nothing to organise was found%1.\n").arg(unread);
  }
  const QString failures =
      failedFiles(summary) > 0 ? QStringLiteral(", but not all files could be written") : unread;
  return QStringLiteral("%1%2 (%3)\n").arg(printableText(summary.status), failures, seconds(summary.elapsed));
}

QString textOf(std::string_view word) {
  return QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
}

bool hasFailed(RunEnd end) { return end == RunEnd::outOfSpace || end == RunEnd::error; }

const auto program = QStringLiteral("kestrova-cli: ");

QString line(const char* what, const Tally::Remark& remark) {
  return problemLine(what, remark.source, remark.error);
}

QString failureLine(const char* what, const std::string& reason) {
  if (reason.empty()) return {};
  return program + QLatin1String(what) + printableText(reason) + u'\n';
}

QString leftBehindLine(const report::LeftBehind& files) {
  if (files.empty()) return {};
  return QStringLiteral("Left behind: ") + QString::fromStdString(report::summaryOf(files)) + u'\n';
}

QString companionLines(const Summary& summary) {
  QString lines;
  if (summary.sidecars > 0) {
    lines += QStringLiteral("Of these, sidecars of photos and videos that were found: %1\n")
                 .arg(countText(summary.sidecars));
  }
  if (summary.videosWithoutStill > 0) {
    lines += QStringLiteral("Live photos of which only the video was found: %1\n")
                 .arg(countText(summary.videosWithoutStill));
  }
  return lines;
}

QString spaceLine(const Summary::Space& space) {
  const auto text = [](std::uint64_t bytes) { return sizeText(static_cast<std::int64_t>(bytes)); };
  const QString free = space.free ? QStringLiteral(", %1 are free").arg(text(*space.free)) : QString();
  const bool isTooLittle = space.free && *space.free < space.needed;
  return QStringLiteral("Nothing was written. Free space needed: %1%2%3\n")
      .arg(text(space.needed), free, isTooLittle ? QStringLiteral(": not enough") : QString());
}

void putSpace(QJsonObject& object, const Summary::Space& space) {
  object.insert(QStringLiteral("spaceNeeded"), static_cast<qint64>(space.needed));
  if (space.free) object.insert(QStringLiteral("spaceFree"), static_cast<qint64>(*space.free));
}

QString verificationLine(const Summary& summary) {
  if (!summary.verification) return {};
  const auto& [result, failure] = *summary.verification;
  if (result.wasStopped || !failure.empty()) return QStringLiteral("Not verified to the end\n");
  if (result.atRisk.empty()) return QStringLiteral("Verified: every file is whole in the target\n");
  return QStringLiteral("At risk: %1 (%2)\n")
      .arg(countText(result.amount.files), sizeText(result.amount.bytes));
}

/// The amount of files, and the number of folders whose contents are unknown.
QJsonObject unreadableJson(const Summary& summary) {
  QJsonObject object = jsonOf(summary.unreadable);
  object.insert(QStringLiteral("folders"), static_cast<qint64>(summary.unreadableFolders.size()));
  return object;
}

}  // namespace

int exitStatus(const Summary& summary) {
  const auto& verification = summary.verification;
  if (summary.end == RunEnd::stopped || (verification && verification->result.wasStopped)) return 130;
  const bool isVerified =
      !verification || (verification->result.atRisk.empty() && verification->failure.empty());
  const bool isWhole = failedFiles(summary) == 0 && summary.unreadableFolders.empty() && isVerified;
  return hasFailed(summary.end) || !isWhole ? 1 : 0;
}

QString summaryTable(const Summary& summary) {
  return heading("Found", "Files", "Size") + row("Photos", summary.found.photos) +
         row("Videos", summary.found.videos) + row("Total", summary.found.total) +
         row("Duplicates", summary.duplicates) + row("Same content", summary.sameContent) +
         heading("Written") + row("Photos", summary.written.photos) + row("Videos", summary.written.videos) +
         row("Rewritten", summary.rewritten) + row("Total", summary.written.total) + heading("Not written") +
         row("Already there", summary.alreadyThere) + row("Small", summary.small) +
         row("Name taken", summary.nameTaken) + row("Failed", summary.failed) +
         row("Unreadable", summary.unreadable) + row("Not reached", summary.notReached) + u'\n' +
         leftBehindLine(summary.leftBehind) + companionLines(summary) +
         (summary.space ? spaceLine(*summary.space) : QString()) + verificationLine(summary) +
         closingLine(summary);
}

QByteArray summaryJson(const Summary& summary) {
  const auto group = [](const auto& amounts) {
    return QJsonObject{{QStringLiteral("photos"), jsonOf(amounts.photos)},
                       {QStringLiteral("videos"), jsonOf(amounts.videos)},
                       {QStringLiteral("total"), jsonOf(amounts.total)}};
  };
  QJsonObject object{
      {QStringLiteral("dryRun"), summary.space.has_value()},
      {QStringLiteral("result"), textOf(wordOf(summary.end))},
      {QStringLiteral("status"), summary.status},
      {QStringLiteral("seconds"), static_cast<double>(summary.elapsed.count()) / 1000.0},
      {QStringLiteral("found"), group(summary.found)},
      {QStringLiteral("duplicates"), jsonOf(summary.duplicates)},
      {QStringLiteral("passedOver"), jsonOf(summary.sameContent)},
      {QStringLiteral("written"), group(summary.written)},
      {QStringLiteral("rewritten"), jsonOf(summary.rewritten)},
      {QStringLiteral("alreadyThere"), jsonOf(summary.alreadyThere)},
      {QStringLiteral("small"), jsonOf(summary.small)},
      {QStringLiteral("exists"), jsonOf(summary.nameTaken)},
      {QStringLiteral("failed"), jsonOf(summary.failed)},
      {QStringLiteral("unreadable"), unreadableJson(summary)},
      {QStringLiteral("notReached"), jsonOf(summary.notReached)},
      {QStringLiteral("leftBehind"), jsonOf(summary.leftBehind)},
      {QStringLiteral("sidecarsLeftBehind"), static_cast<qint64>(summary.sidecars)},
      {QStringLiteral("videosWithoutStill"), static_cast<qint64>(summary.videosWithoutStill)},
  };
  if (summary.space) putSpace(object, *summary.space);
  if (summary.verification && summary.verification->failure.empty())
    object.insert(QStringLiteral("atRisk"), jsonOf(summary.verification->result.amount));
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString errorLines(const Summary& summary, const std::vector<Tally::Remark>& remarks) {
  QString lines;
  for (const Tally::Remark& remark : remarks) {
    const bool isUnreadable = remark.outcome == Outcome::unreadable;
    if (traitsOf(remark.outcome).isError)
      lines += line(isUnreadable ? "not readable: " : "not written: ", remark);
  }
  for (const auto& [path, reason] : summary.unreadableFolders)
    lines += problemLine("not readable: ", path, reason);
  lines += failureLine("the run is not recorded to its end: ", summary.recordFailure);
  lines += failureLine("the report is not whole: ", summary.reportFailure);
  if (summary.verification) lines += failureLine("", summary.verification->failure);
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
